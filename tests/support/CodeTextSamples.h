#pragma once

// Random stylesheet-like texts and edits for the tests that compare the
// code tab's incremental work with the whole-text result: made of the
// pieces that matter to the parser and the colouring rules, and of the
// characters that trip up offsets (surrogate pairs and their lone halves,
// combining marks, CR LF, U+2028, no-break spaces, NUL).

#include <QList>
#include <QRandomGenerator>
#include <QString>
#include <QStringList>

namespace CodeTextSamples {

inline const QStringList &pieces()
{
    static const QStringList list = {
        QStringLiteral("{"),
        QStringLiteral("}"),
        QStringLiteral(":"),
        QStringLiteral(";"),
        QStringLiteral("\n"),
        QStringLiteral("\n"),
        QStringLiteral(" "),
        QStringLiteral("  "),
        QStringLiteral("\t"),
        QStringLiteral("/*"),
        QStringLiteral("*/"),
        QStringLiteral("/"),
        QStringLiteral("*"),
        QStringLiteral("@media"),
        QStringLiteral("@"),
        QStringLiteral("@import url(x.css);"),
        QStringLiteral("var(--x"),
        QStringLiteral("var(--a-b)"),
        QStringLiteral("var(--c, 1px)"),
        QStringLiteral(","),
        QStringLiteral("("),
        QStringLiteral(")"),
        QStringLiteral(".a"),
        QStringLiteral(".a"),
        QStringLiteral(".btn-large"),
        QStringLiteral(":root"),
        QStringLiteral("color"),
        QStringLiteral("red"),
        QStringLiteral("--x"),
        QStringLiteral("b_c9"),
        QStringLiteral(" { color: red; }\n"),
        QStringLiteral("\n.x {\n    margin: 0;\n}\n"),
        QString::fromUtf16(u"\u00e9"),
        QString::fromUtf16(u"\u0301"),
        QString::fromUtf16(u"\u00a0"),
        QString::fromUtf16(u"\u2028"),
        QString::fromUtf16(u"\u2029"),
        QString::fromUtf16(u"\u3000"),
        QString::fromUtf16(u"\u180e"),
        QString::fromUtf16(u"\u0085"),
        QString::fromUtf16(u"\u0600"),
        QString::fromUtf16(u"\U0001F642"),
        QString::fromUtf16(u"\U0001D400"),
        QString(QChar(0xD83D)),
        QString(QChar(0xDE42)),
        QStringLiteral("\r"),
        QStringLiteral("\r\n"),
        QString(QChar(0)),
        QString::fromUtf16(u"\ufffd"),
    };
    return list;
}

inline QString randomText(QRandomGenerator &random, int maxPieces)
{
    const QStringList &list = pieces();
    QString text;
    const int count = int(random.bounded(maxPieces + 1));
    for (int i = 0; i < count; ++i)
        text += list.at(int(random.bounded(int(list.size()))));
    return text;
}

// Mostly well-formed rulesets, with a piece of anything now and then.
inline QString randomStylesheet(QRandomGenerator &random, int maxRulesets)
{
    static const QStringList selectors = {
        QStringLiteral(".a"),      QStringLiteral(".b"),         QStringLiteral(":root"),
        QStringLiteral("a:hover"), QStringLiteral(".btn-large"), QStringLiteral("h1, h2"),
    };
    static const QStringList declarations = {
        QStringLiteral("color: red;"),
        QStringLiteral("--x: 1px;"),
        QStringLiteral("margin: var(--x, 2px);"),
        QStringLiteral("background: url(a;b)"),
        QStringLiteral("b: c"),
    };
    QString text;
    const int count = int(random.bounded(maxRulesets + 1));
    int openAtRules = 0;
    for (int i = 0; i < count; ++i) {
        if (random.bounded(6) == 0)
            text += randomText(random, 3);
        if (random.bounded(8) == 0) {
            text += QStringLiteral("@media (min-width: 640px) {\n");
            ++openAtRules;
        } else if (openAtRules > 0 && random.bounded(4) == 0) {
            text += QStringLiteral("}\n");
            --openAtRules;
        }
        text += selectors.at(int(random.bounded(int(selectors.size())))) + QStringLiteral(" {\n");
        const int lines = int(random.bounded(4));
        for (int line = 0; line < lines; ++line)
            text += QStringLiteral("    ") +
                    declarations.at(int(random.bounded(int(declarations.size())))) +
                    QStringLiteral("\n");
        text += QStringLiteral("}\n\n");
    }
    for (; openAtRules > 0; --openAtRules)
        text += QStringLiteral("}\n");
    return text;
}

struct Edit
{
    qsizetype at = 0;
    qsizetype removed = 0;
    QString inserted;
};

// An edit anywhere, also between the halves of a surrogate pair.
inline Edit randomEdit(QRandomGenerator &random, const QString &text, int maxPieces)
{
    Edit edit;
    edit.at = qsizetype(random.bounded(int(text.size()) + 1));
    edit.removed = qMin(qsizetype(random.bounded(12)), text.size() - edit.at);
    if (random.bounded(4) == 0)
        edit.removed = 0;
    edit.inserted = randomText(random, maxPieces);
    return edit;
}

inline QString applied(const QString &text, const Edit &edit)
{
    QString result = text;
    result.replace(edit.at, edit.removed, edit.inserted);
    return result;
}

} // namespace CodeTextSamples
