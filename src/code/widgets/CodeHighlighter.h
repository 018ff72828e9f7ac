#pragma once

#include "code/SyntaxColouring.h"

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

#include <array>

class QTextBlock;

namespace Ombrel {

class CodeTextEdit;
class SyntaxScanner;

// Paints each block of the code tab with the runs the scanner holds for it;
// the colouring itself is computed over the whole text elsewhere. A block
// longer than maxPaintedBlock units (a minified stylesheet on one line) keeps
// the palette's text colour: laid out with a format for every run it would
// take seconds at each key, for colours nobody could read on such a line; so
// do the pieces of a line the view lays out in pieces. The runs a block
// shows are kept with it, so that after an edit only the blocks whose runs
// changed are painted again. Text in no role keeps the text colour of the
// palette, and so follows it; the roles keep the colours of the appearance
// they were painted in.
//
// The highlighter paints the whole text (rehighlight()) when the text is
// replaced, and otherwise only when told through refresh(), once the
// scanner has followed an edit: left to react to the document's changes by
// itself, it would copy and go over every unit of each changed block (on a
// minified stylesheet the whole text) at every key, and lay out each block
// of a large paste on its own.
//
// An edit that changes the runs of more than eagerBlocks blocks (a paste of
// megabytes, a comment opened at the top) paints that many at once; each
// other block is painted when the view is about to show it.
class CodeHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    static constexpr qsizetype maxPaintedBlock = 100'000;
    static constexpr int eagerBlocks = 500;

    CodeHighlighter(CodeTextEdit &view, const SyntaxScanner &scanner);

    // The appearance of the blocks painted from now on.
    bool isDark() const { return m_dark; }
    void setDark(bool dark) { m_dark = dark; }

    // While the text is being replaced the scanner is not yet in step with
    // it: blocks are left unpainted, for one pass over all once it is.
    void setSuspended(bool suspended) { m_suspended = suspended; }

    // After an edit of the text from editFrom to editTo (offsets of the
    // text): paints the blocks the edit changed, and those that meet
    // [from, to) whose runs or appearance differ from what they show.
    void refresh(qsizetype from, qsizetype to, qsizetype editFrom, qsizetype editTo);

    // Whether some block may show other runs than the scanner's, left to be
    // painted when shown.
    bool isBehind() const { return m_behind; }

    // How many times a block has been painted, all blocks together: what an
    // edit costs in painting.
    qint64 paintCount() const { return m_paintCount; }

protected:
    void highlightBlock(const QString &text) override;

private:
    // Paints the blocks the view is about to show whose runs or appearance
    // differ from what they show.
    void paintShown();
    bool showsItsRuns(const QTextBlock &block) const;
    // The runs of a block, in offsets within it.
    QList<SyntaxRun> runsOf(const QTextBlock &block) const;
    // Sets a block's formats from its runs, its text left unread; the caller
    // has the block laid out again.
    void repaint(QTextBlock block);
    const QTextCharFormat &format(SyntaxRole role);

    CodeTextEdit &m_view;
    const SyntaxScanner &m_scanner;
    bool m_dark = false;
    bool m_behind = false;
    bool m_suspended = false;
    qint64 m_paintCount = 0;
    // The formats of each role, for the appearance they were made for.
    std::array<QTextCharFormat, 8> m_formats;
    bool m_formatsDark = false;
    bool m_formatsMade = false;
};

} // namespace Ombrel
