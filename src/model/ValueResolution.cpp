#include "CSSFile.h"
#include "CSSRuleset.h"
#include "knowledge/CssNumber.h"
#include "text/TextScan.h"

#include <algorithm>

namespace Ombrel {

namespace {

bool isAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

bool equalWhenLowercased(QStringView a, QStringView b)
{
    if (isAscii(a) && isAscii(b))
        return a.size() == b.size() && a.compare(b, Qt::CaseInsensitive) == 0;
    return a.toString().toLower() == b.toString().toLower();
}

// What one resolution, its re-entries included, may still spend.
struct Budget
{
    int substitutionsLeft = CSSRuleset::maxSubstitutions;
    bool exhausted = false;
};

// The text under substitution: a settled front, which no later substitution
// can reach, and the rest, kept at the back of a buffer with room before it.
// A substitution then writes its own text and a few characters around it,
// instead of moving everything behind it: a definition that grows its own
// reference would otherwise move its whole text at every step.
class ResolvingText
{
public:
    explicit ResolvingText(const QString &text) : m_buffer(text) {}

    qsizetype size() const { return m_settled.size() + m_buffer.size() - m_restStart; }
    // Starts at most "var(" less one character before the last substitution.
    QStringView rest() const { return QStringView(m_buffer).sliced(m_restStart); }
    QString text() const { return m_settled + rest().toString(); }

    // Puts replacement in the place of rest()[from, to). The characters more
    // than three before from are settled: a "var(" found after this begins
    // no earlier than three characters before the replacement, since nothing
    // before from held one.
    void replace(qsizetype from, qsizetype to, QStringView replacement)
    {
        constexpr qsizetype context = 3;
        const qsizetype keepFrom = std::max<qsizetype>(0, m_settled.size() + from - context);
        QString kept;
        if (keepFrom < m_settled.size()) {
            kept = m_settled.sliced(keepFrom) + rest().first(from).toString();
            m_settled.truncate(keepFrom);
        } else {
            const qsizetype settling = keepFrom - m_settled.size();
            m_settled += rest().first(settling);
            kept = rest().sliced(settling, from - settling).toString();
        }

        qsizetype tailStart = m_restStart + to;
        const qsizetype needed = kept.size() + replacement.size();
        if (needed > tailStart) {
            // As much room again as the tail holds, so that a text that keeps
            // growing is copied a number of times that grows with the log of
            // its size.
            const qsizetype tailSize = m_buffer.size() - tailStart;
            const qsizetype room = needed + std::max(needed, tailSize);
            QString grown(room + tailSize, Qt::Uninitialized);
            std::copy_n(m_buffer.constData() + tailStart, tailSize, grown.data() + room);
            m_buffer = std::move(grown);
            tailStart = room;
        }
        m_restStart = tailStart - needed;
        QChar *out = m_buffer.data() + m_restStart;
        out = std::copy(kept.cbegin(), kept.cend(), out);
        std::copy(replacement.begin(), replacement.end(), out);
    }

private:
    QString m_settled;
    QString m_buffer;
    qsizetype m_restStart = 0;
};

QString resolve(const QString &value, const CSSVariables &variables, int depth, Budget &budget)
{
    static const QString reference = QStringLiteral("var(");
    if (depth >= 8)
        return value;
    // Deliberately case-sensitive, unlike the search below: "VAR(--x)" alone
    // is left as it stands.
    if (!value.contains(reference))
        return value;

    // The search starts again from the front after each substitution. Nothing
    // before the last substituted reference held "var(", so only a match that
    // reaches into the substituted text can be new: the rest of the text,
    // which starts three characters before it, holds the same leftmost
    // reference without the resolved front.
    ResolvingText text(value);
    for (;;) {
        const QStringView rest = text.rest();
        const qsizetype start = rest.indexOf(reference, 0, Qt::CaseInsensitive);
        if (start < 0)
            break;
        const qsizetype open = start + reference.size();
        const qsizetype close = TextScan::closingParenthesis(rest, open);
        if (close < 0)
            break;
        const QStringView inner = TextScan::trimmedWhitespace(rest.sliced(open, close - open));
        // Characters, not code units: a "-" or "," with a combining mark on
        // it is another character.
        const TextScan::CharacterWalk innerWalk(inner);
        if (!inner.startsWith(QLatin1String("--")) || !innerWalk.standsAlone(1))
            break;
        const qsizetype comma = innerWalk.indexOfStandalone(u',');
        const QString name =
            TextScan::trimmedWhitespace(comma < 0 ? inner : inner.first(comma)).toString();
        QString replacement;
        if (const auto stored = variables.constFind(name); stored != variables.constEnd())
            replacement = *stored;
        else if (comma >= 0)
            replacement = TextScan::trimmedWhitespace(inner.sliced(comma + 1)).toString();
        else
            break;
        const qsizetype size = text.size();
        const qsizetype newSize = size - (close + 1 - start) + replacement.size();
        const bool growsPastTheLimit = newSize > size && newSize > CSSRuleset::maxResolvedLength;
        if (--budget.substitutionsLeft < 0 || growsPastTheLimit) {
            budget.exhausted = true;
            return value;
        }
        text.replace(start, close + 1, replacement);
    }
    return resolve(text.text(), variables, depth + 1, budget);
}

std::optional<Color> resolvedColor(const std::optional<QString> &raw, const CSSVariables &variables)
{
    if (!raw)
        return std::nullopt;
    return Color::fromCssString(CSSRuleset::resolveVars(*raw, variables));
}

} // namespace

std::optional<QString> CSSRuleset::value(QStringView name) const
{
    for (const CSSProperty &property : m_properties) {
        if (equalWhenLowercased(property.name, name))
            return property.value;
    }
    return std::nullopt;
}

std::optional<QString> CSSRuleset::resolvedValue(QStringView name,
                                                 const CSSVariables &variables) const
{
    const std::optional<QString> raw = value(name);
    if (!raw)
        return std::nullopt;
    return resolveVars(*raw, variables);
}

QString CSSRuleset::resolveVars(const QString &value, const CSSVariables &variables, int depth)
{
    Budget budget;
    const QString result = resolve(value, variables, depth, budget);
    return budget.exhausted ? value : result;
}

std::optional<Color> CSSRuleset::resolvedBackgroundColor(const CSSVariables &variables) const
{
    // A background-color that does not read is final: no fall-through to
    // the shorthand.
    std::optional<QString> raw = value(u"background-color");
    if (!raw)
        raw = value(u"background");
    return resolvedColor(raw, variables);
}

std::optional<Color> CSSRuleset::resolvedTextColor(const CSSVariables &variables) const
{
    return resolvedColor(value(u"color"), variables);
}

std::optional<double> CSSRuleset::cssLength(const QString &text)
{
    QString number = text;
    number.remove(QLatin1String("px")).remove(QLatin1String("rem")).remove(QLatin1String("em"));
    return readCssNumber(TextScan::trimmedWhitespace(number));
}

double CSSRuleset::resolvedBorderRadius(const CSSVariables &variables) const
{
    const std::optional<QString> raw = value(u"border-radius");
    if (!raw)
        return 0;
    return std::min(cssLength(resolveVars(*raw, variables)).value_or(0.0), 999.0);
}

FontWeight CSSRuleset::resolvedFontWeight(const CSSVariables &variables) const
{
    const std::optional<QString> raw = value(u"font-weight");
    if (!raw)
        return FontWeight::regular;
    static const QHash<QString, FontWeight> weights = {
        {QStringLiteral("bold"), FontWeight::bold},
        {QStringLiteral("700"), FontWeight::bold},
        {QStringLiteral("800"), FontWeight::heavy},
        {QStringLiteral("900"), FontWeight::black},
        {QStringLiteral("600"), FontWeight::semibold},
        {QStringLiteral("semibold"), FontWeight::semibold},
        {QStringLiteral("500"), FontWeight::medium},
        {QStringLiteral("medium"), FontWeight::medium},
        {QStringLiteral("300"), FontWeight::light},
        {QStringLiteral("light"), FontWeight::light},
        {QStringLiteral("200"), FontWeight::ultraLight},
        {QStringLiteral("100"), FontWeight::thin},
        {QStringLiteral("thin"), FontWeight::thin},
    };
    return weights.value(resolveVars(*raw, variables).toLower(), FontWeight::regular);
}

const CSSFile::Readings &CSSFile::readings() const
{
    if (m_readings)
        return *m_readings;
    Readings readings;
    for (const CSSRulesetPtr &ruleset : m_rulesets) {
        for (const CSSProperty &property : ruleset->properties()) {
            if (property.isCustomProperty()) {
                readings.variables.insert(property.name, property.value);
                ++readings.customPropertyCount;
            }
        }
    }
    return m_readings.emplace(std::move(readings));
}

CSSVariables CSSFile::variables() const
{
    return readings().variables;
}

bool CSSFile::hasVariables() const
{
    return readings().customPropertyCount > 0;
}

qsizetype CSSFile::customPropertyCount() const
{
    return readings().customPropertyCount;
}

} // namespace Ombrel
