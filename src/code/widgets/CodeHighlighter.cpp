#include "CodeHighlighter.h"

#include "code/SyntaxScanner.h"

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

CodeHighlighter::CodeHighlighter(QTextDocument *document, const SyntaxScanner &scanner)
    : QSyntaxHighlighter(document), m_scanner(scanner)
{
    disconnect(document, SIGNAL(contentsChange(int, int, int)), this,
               SLOT(_q_reformatBlocks(int, int, int)));
}

QList<SyntaxRun> CodeHighlighter::runsOf(const QTextBlock &block) const
{
    if (block.length() - 1 > maxPaintedBlock)
        return {};
    const qsizetype start = block.position();
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

void CodeHighlighter::highlightBlock(const QString &)
{
    if (m_suspended)
        return;
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
    const auto paint = [&](const QTextBlock &block) {
        repaint(block);
        if (dirtyFrom < 0)
            dirtyFrom = block.position();
        dirtyFrom = std::min<qsizetype>(dirtyFrom, block.position());
        dirtyTo = std::max<qsizetype>(dirtyTo, block.position() + block.length());
    };
    const QTextBlock editedFirst = doc->findBlock(int(editFrom));
    const int editedLast = doc->findBlock(int(editTo)).blockNumber();
    for (QTextBlock block = editedFirst; block.isValid() && block.blockNumber() <= editedLast;
         block = block.next())
        paint(block);
    for (QTextBlock block = doc->findBlock(int(from)); from < to && block.isValid();
         block = block.next()) {
        if (block.position() >= to && block.position() > from)
            break;
        const int number = block.blockNumber();
        if (number >= editedFirst.blockNumber() && number <= editedLast)
            continue;
        const auto *shown = static_cast<const ShownRuns *>(block.userData());
        if (shown && shown->dark == m_dark && shown->runs == runsOf(block))
            continue;
        paint(block);
    }
    // One relayout of what was painted, together with the edit's own.
    if (dirtyFrom >= 0)
        doc->markContentsDirty(int(dirtyFrom), int(dirtyTo - dirtyFrom));
}

} // namespace Ombrel
