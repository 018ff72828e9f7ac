// Substitutes var() in any text with custom properties read from any
// stylesheet: the first line is the value, the rest the stylesheet. Cyclic and
// exploding definitions must return within the bounds, and the result is
// never longer than the bound unless the value itself was.

#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Ombrel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text =
        QString::fromUtf8(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    const qsizetype lineEnd = text.indexOf(u'\n');
    const QString value = lineEnd < 0 ? text : text.first(lineEnd);
    const QString stylesheet = lineEnd < 0 ? QString() : text.sliced(lineEnd + 1);
    const auto file = std::make_shared<CSSFile>(QStringLiteral("/f.css"),
                                                CSSParser::parse(stylesheet), stylesheet);
    const CSSVariables variables = file->variables();
    const QString resolved = CSSRuleset::resolveVars(value, variables);
    if (resolved.size() > std::max(value.size(), CSSRuleset::maxResolvedLength))
        std::abort();
    for (const CSSRulesetPtr &ruleset : file->rulesets()) {
        ruleset->resolvedBackgroundColor(variables);
        ruleset->resolvedTextColor(variables);
    }
    return 0;
}
