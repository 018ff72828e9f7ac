#include "SyntaxColouring.h"

#include <QRegularExpression>

#include <array>
#include <vector>

namespace Ombrel::SyntaxColouring {

namespace {

constexpr std::array<SyntaxRole, 7> ruleOrder{
    SyntaxRole::Comment,           SyntaxRole::AtRule,
    SyntaxRole::Selector,          SyntaxRole::PropertyName,
    SyntaxRole::VariableReference, SyntaxRole::Value,
    SyntaxRole::Punctuation,
};

// Half of a surrogate pair on its own makes QRegularExpression refuse the
// whole subject; U+FFFD takes its place at the same offset.
QString withoutLoneSurrogates(QStringView text)
{
    QString copy;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (!unit.isSurrogate())
            continue;
        if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
            continue;
        }
        if (copy.isNull())
            copy = text.toString();
        copy[i] = QChar::ReplacementCharacter;
    }
    return copy.isNull() ? text.toString() : copy;
}

const QList<QRegularExpression> &expressions()
{
    static const QList<QRegularExpression> compiled = [] {
        QList<QRegularExpression> list;
        for (const SyntaxRole role : ruleOrder)
            list.append(QRegularExpression(pattern(role),
                                           QRegularExpression::MultilineOption |
                                               QRegularExpression::UseUnicodePropertiesOption));
        return list;
    }();
    return compiled;
}

} // namespace

QString pattern(SyntaxRole role)
{
    switch (role) {
    case SyntaxRole::None:
        break;
    case SyntaxRole::Comment:
        return QStringLiteral(R"((?s)/\*.*?\*/)");
    case SyntaxRole::AtRule:
        return QStringLiteral(R"(@[a-zA-Z-]+)");
    case SyntaxRole::Selector:
        return QStringLiteral(R"(^[^{}/\n][^{/\n]*(?=\s*\{))");
    case SyntaxRole::PropertyName:
        return QStringLiteral(R"((?<=\{|;|\n)\s*([\w-]+)\s*(?=:))");
    case SyntaxRole::VariableReference:
        return QStringLiteral(R"(var\(--[\w-]+(?:,[^)]*)?\))");
    case SyntaxRole::Value:
        return QStringLiteral(R"((?<=:)\s*[^;{}\n]+(?=[;\n}]))");
    case SyntaxRole::Punctuation:
        return QStringLiteral(R"([{}:;])");
    }
    return QString();
}

QList<SyntaxRun> roleRuns(QStringView text)
{
    const QString subject = withoutLoneSurrogates(text);
    std::vector<SyntaxRole> roles(size_t(subject.size()), SyntaxRole::None);
    const QList<QRegularExpression> &rules = expressions();
    for (size_t rule = 0; rule < ruleOrder.size(); ++rule) {
        QRegularExpressionMatchIterator matches = rules[qsizetype(rule)].globalMatch(subject);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            std::fill(roles.begin() + match.capturedStart(), roles.begin() + match.capturedEnd(),
                      ruleOrder[rule]);
        }
    }

    QList<SyntaxRun> runs;
    for (qsizetype i = 0; i < qsizetype(roles.size());) {
        qsizetype end = i + 1;
        while (end < qsizetype(roles.size()) && roles[size_t(end)] == roles[size_t(i)])
            ++end;
        if (roles[size_t(i)] != SyntaxRole::None)
            runs.append({i, end - i, roles[size_t(i)]});
        i = end;
    }
    return runs;
}

Color colour(SyntaxRole role, bool dark)
{
    switch (role) {
    case SyntaxRole::None:
        break;
    case SyntaxRole::Comment:
        return {0.5, 0.55, 0.5, 1};
    case SyntaxRole::AtRule:
        return dark ? Color{1.0, 0.55, 0.55, 1} : Color{0.7, 0.1, 0.1, 1};
    case SyntaxRole::Selector:
        return dark ? Color{0.49, 0.73, 1.0, 1} : Color{0.1, 0.4, 0.8, 1};
    case SyntaxRole::PropertyName:
        return dark ? Color{0.6, 0.85, 0.7, 1} : Color{0.1, 0.5, 0.3, 1};
    case SyntaxRole::VariableReference:
        return dark ? Color{0.9, 0.6, 1.0, 1} : Color{0.55, 0.1, 0.8, 1};
    case SyntaxRole::Value:
        return dark ? Color{1.0, 0.73, 0.49, 1} : Color{0.7, 0.3, 0.0, 1};
    case SyntaxRole::Punctuation:
        return dark ? Color{0.65, 0.65, 0.65, 1} : Color{0.5, 0.5, 0.5, 1};
    }
    return {};
}

QList<ColouredRun> colourRuns(QStringView text, bool dark)
{
    QList<ColouredRun> coloured;
    for (const SyntaxRun &run : roleRuns(text))
        coloured.append({run.start, run.length, colour(run.role, dark)});
    return coloured;
}

} // namespace Ombrel::SyntaxColouring
