#include "CodeHighlighter.h"

#include "code/SyntaxScanner.h"
#include "code/widgets/CodeTextEdit.h"

#include <QTextBlock>
#include <QTextBlockUserData>
#include <QTextDocument>
#include <QTextLayout>

namespace Ombrel {

namespace {

// What a block was last painted with.
class ShownRuns : public QTextBlockUserData
{
public:
    ShownRuns(QList<SyntaxRun> runs, bool dark) : runs(std::move(runs)), dark(dark) {}

    QList<SyntaxRun> runs;
    bool dark;
};

} // namespace

CodeHighlighter::CodeHighlighter(CodeTextEdit &view, const SyntaxScanner &scanner)
    : QSyntaxHighlighter(view.document()), m_view(view), m_scanner(scanner)
{
    disconnect(view.document(), SIGNAL(contentsChange(int, int, int)), this,
               SLOT(_q_reformatBlocks(int, int, int)));
    connect(&view, &CodeTextEdit::aboutToPaint, this, &CodeHighlighter::paintShown);
}

QList<SyntaxRun> CodeHighlighter::runsOf(const QTextBlock &block) const
{
    if (block.length() - 1 > maxPaintedBlock || m_view.isPiece(block))
        return {};
    const qsizetype start = m_view.textOffset(block.position());
    QList<SyntaxRun> runs = m_scanner.runs(start, start + block.length() - 1);
    for (SyntaxRun &run : runs)
        run.start -= start;
    return runs;
}

const QTextCharFormat &CodeHighlighter::format(SyntaxRole role)
{
    if (!m_formatsMade || m_formatsDark != m_dark) {
        for (size_t i = 0; i < m_formats.size(); ++i) {
            m_formats[i] = QTextCharFormat();
            m_formats[i].setForeground(SyntaxColouring::colour(SyntaxRole(i), m_dark).toQColor());
        }
        m_formatsDark = m_dark;
        m_formatsMade = true;
    }
    return m_formats[size_t(role)];
}

bool CodeHighlighter::showsItsRuns(const QTextBlock &block) const
{
    const auto *shown = static_cast<const ShownRuns *>(block.userData());
    return shown && shown->dark == m_dark && shown->runs == runsOf(block);
}

void CodeHighlighter::highlightBlock(const QString &)
{
    if (m_suspended)
        return;
    if (currentBlock() == document()->firstBlock())
        m_behind = false;
    ++m_paintCount;
    QList<SyntaxRun> runs = runsOf(currentBlock());
    for (const SyntaxRun &run : runs)
        setFormat(int(run.start), int(run.length), format(run.role));
    setCurrentBlockUserData(new ShownRuns(std::move(runs), m_dark));
}

void CodeHighlighter::repaint(QTextBlock block)
{
    QList<SyntaxRun> runs = runsOf(block);
    QList<QTextLayout::FormatRange> ranges;
    ranges.reserve(runs.size());
    for (const SyntaxRun &run : std::as_const(runs))
        ranges.append({int(run.start), int(run.length), format(run.role)});
    QTextLayout *layout = block.layout();
    if (!ranges.isEmpty() || !layout->formats().isEmpty())
        layout->setFormats(ranges);
    block.setUserData(new ShownRuns(std::move(runs), m_dark));
    ++m_paintCount;
}

void CodeHighlighter::refresh(qsizetype from, qsizetype to, qsizetype editFrom, qsizetype editTo)
{
    QTextDocument *doc = document();
    qsizetype dirtyFrom = -1;
    qsizetype dirtyTo = -1;
    int budget = eagerBlocks;
    const auto paint = [&](const QTextBlock &block) {
        repaint(block);
        --budget;
        if (dirtyFrom < 0)
            dirtyFrom = block.position();
        dirtyFrom = std::min<qsizetype>(dirtyFrom, block.position());
        dirtyTo = std::max<qsizetype>(dirtyTo, block.position() + block.length());
    };
    const QTextBlock editedFirst = doc->findBlock(m_view.documentPosition(editFrom));
    const QTextBlock editedLast = doc->findBlock(m_view.documentPosition(editTo));
    for (QTextBlock block = editedFirst; block.isValid(); block = block.next()) {
        if (budget == 0) {
            m_behind = true;
            break;
        }
        paint(block);
        if (block == editedLast)
            break;
    }
    const int docFrom = m_view.documentPosition(from);
    const int docTo = m_view.documentPosition(to);
    for (QTextBlock block = doc->findBlock(docFrom); from < to && block.isValid();
         block = block.next()) {
        if (block.position() >= docTo && block.position() > docFrom)
            break;
        if (block.position() >= editedFirst.position() &&
            block.position() <= editedLast.position()) {
            block = editedLast;
            continue;
        }
        if (budget == 0) {
            m_behind = true;
            break;
        }
        --budget;
        if (showsItsRuns(block))
            continue;
        paint(block);
    }
    // One relayout of what was painted, together with the edit's own.
    if (dirtyFrom >= 0)
        doc->markContentsDirty(int(dirtyFrom), int(dirtyTo - dirtyFrom));
}

void CodeHighlighter::paintShown()
{
    if (!m_behind || m_suspended)
        return;
    qsizetype dirtyFrom = -1;
    qsizetype dirtyTo = -1;
    QTextBlock block = m_view.firstShownBlock();
    for (int i = m_view.shownBlockLimit(); i > 0 && block.isValid(); --i, block = block.next()) {
        if (showsItsRuns(block))
            continue;
        repaint(block);
        if (dirtyFrom < 0)
            dirtyFrom = block.position();
        dirtyTo = block.position() + block.length();
    }
    if (dirtyFrom >= 0)
        document()->markContentsDirty(int(dirtyFrom), int(dirtyTo - dirtyFrom));
}

} // namespace Ombrel
