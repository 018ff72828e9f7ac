#include "CodeHighlighter.h"

#include "code/SyntaxScanner.h"

#include <QTextBlock>
#include <QTextBlockUserData>

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
{}

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

void CodeHighlighter::refresh(qsizetype from, qsizetype to, qsizetype editFrom, qsizetype editTo)
{
    const QTextDocument *doc = document();
    const int editedFirst = doc->findBlock(int(editFrom)).blockNumber();
    const int editedLast = doc->findBlock(int(editTo)).blockNumber();
    for (QTextBlock block = doc->findBlock(int(from)); block.isValid(); block = block.next()) {
        if (block.position() >= to && block.position() > from)
            break;
        if (block.blockNumber() >= editedFirst && block.blockNumber() <= editedLast)
            continue;
        const auto *shown = static_cast<const ShownRuns *>(block.userData());
        if (shown && shown->dark == m_dark && shown->runs == runsOf(block))
            continue;
        rehighlightBlock(block);
    }
}

} // namespace Ombrel
