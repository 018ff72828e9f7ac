// The code tab's work on any text. The first byte chooses how the rest is
// read: as UTF-8, or as raw UTF-16 units (lone surrogates included), and
// where an edit falls. Then:
// - the scanner's colouring of the whole text must equal the seven rules as
//   regular expressions (on texts short enough for the engine to finish);
// - after the edit, the scanner's rescan and the incremental parse must
//   equal a whole-text colouring and a full parse;
// - rulesetAndPropAt's one-pass search must equal the ruleset-by-ruleset
//   search at every offset.

#include "CursorMappingReference.h"
#include "code/CursorMapping.h"
#include "code/IncrementalParse.h"
#include "code/SyntaxColouring.h"
#include "code/SyntaxScanner.h"
#include "model/CSSParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Ombrel;

namespace {

// Backtracking engines take quadratic time on some texts; the comparison
// with them is kept to texts they finish quickly.
constexpr qsizetype longestForTheEngine = 4096;

QStringList contentOf(const QList<ParsedRuleset> &rulesets)
{
    QStringList lines;
    for (const ParsedRuleset &ruleset : rulesets) {
        lines.append(ruleset.selector);
        for (const CSSProperty &property : ruleset.properties)
            lines.append(property.name + QLatin1Char(':') + property.value);
    }
    return lines;
}

QList<ParsedRuleset> recordsOf(const CSSRulesetList &rulesets)
{
    QList<ParsedRuleset> records;
    for (const CSSRulesetPtr &ruleset : rulesets)
        records.append({ruleset->selector(), ruleset->properties()});
    return records;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const uint8_t mode = data[0];
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    const QString text =
        (mode & 1) ? QString(reinterpret_cast<const QChar *>(bytes.constData()), bytes.size() / 2)
                   : QString::fromUtf8(bytes);

    SyntaxScanner scanner;
    scanner.reset(text);
    if (text.size() <= longestForTheEngine && scanner.runs() != SyntaxColouring::roleRuns(text))
        std::abort();

    // The text before the edit lacked a stretch of the text, or had one
    // more: mode picks where.
    const qsizetype at = text.isEmpty() ? 0 : qsizetype((mode >> 1) * 7) % (text.size() + 1);
    const qsizetype length = std::min<qsizetype>((mode >> 4) + 1, text.size() - at);
    const bool inserted = mode & 2;
    const QString before =
        inserted ? QString(text).remove(at, length) : QString(text).insert(at, text.mid(0, length));
    SyntaxScanner edited;
    edited.reset(before);
    edited.edit(text, at, inserted ? 0 : length, inserted ? length : 0);
    if (edited.runs() != scanner.runs())
        std::abort();

    IncrementalParse parse(mode & 4 ? 1 : 64);
    parse.reset(before);
    parse.edit(text, at, inserted ? 0 : length, inserted ? length : 0);
    const CSSRulesetList full = CSSParser::parse(text);
    if (contentOf(parse.rulesets()) != contentOf(recordsOf(full)))
        std::abort();

    if (text.size() <= longestForTheEngine / 4) {
        const CSSRulesetList rulesets = full + CSSParser::parse(text.mid(at));
        for (qsizetype offset = -1; offset <= text.size() + 1; ++offset) {
            if (CursorMapping::rulesetAndPropAt(offset, text, rulesets) !=
                CursorMappingReference::rulesetAndPropAt(offset, text, rulesets))
                std::abort();
        }
    }
    return 0;
}
