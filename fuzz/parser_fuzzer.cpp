// Parses any bytes, generates the text, and parses that again. For plain ASCII
// input whose selectors, names and values hold no brace, ";" or comment
// opener, the second parse must give the same rulesets and the second
// generation the same text, the generated text holds nothing a parse drops,
// and a file loaded from it counts as whole. Counting what a parse drops
// never changes what it finds.

#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Ombrel;

namespace {

bool isPlain(const QString &text)
{
    return !text.contains(u'{') && !text.contains(u'}') && !text.contains(u';') &&
           !text.contains(QLatin1String("/*"));
}

bool fieldsArePlain(const CSSRulesetList &rulesets)
{
    for (const CSSRulesetPtr &ruleset : rulesets) {
        if (!isPlain(ruleset->selector()))
            return false;
        for (const CSSProperty &property : ruleset->properties()) {
            if (!isPlain(property.name) || !isPlain(property.value))
                return false;
        }
    }
    return true;
}

bool sameText(const CSSRulesetList &a, const CSSRulesetList &b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (a[i]->selector() != b[i]->selector())
            return false;
        const CSSPropertyList &pa = a[i]->properties();
        const CSSPropertyList &pb = b[i]->properties();
        if (pa.size() != pb.size())
            return false;
        for (qsizetype j = 0; j < pa.size(); ++j) {
            if (pa[j].name != pb[j].name || pa[j].value != pb[j].value)
                return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString text = QString::fromUtf8(bytes);
    CSSParser::DroppedCounts dropped;
    const CSSFile first(QStringLiteral("/fuzz.css"), CSSParser::parse(text, dropped), text,
                        dropped);
    if (!sameText(first.rulesets(), CSSParser::parse(text)))
        std::abort();
    const QString generated = first.generateCSS();
    CSSParser::DroppedCounts droppedAgain;
    const CSSFile second(QStringLiteral("/fuzz.css"), CSSParser::parse(generated, droppedAgain),
                         generated, droppedAgain);
    const QString regenerated = second.generateCSS();

    bool ascii = true;
    for (size_t i = 0; i < size; ++i)
        ascii = ascii && data[i] < 0x80;
    if (ascii && fieldsArePlain(first.rulesets()) &&
        (!sameText(first.rulesets(), second.rulesets()) || regenerated != generated ||
         droppedAgain != CSSParser::DroppedCounts() ||
         second.originalState() != OriginalState::Whole))
        std::abort();
    return 0;
}
