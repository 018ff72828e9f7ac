#pragma once

// The cursor-to-ruleset mapping written the slow, literal way: each ruleset
// searches the text from its start for its own selector. The code's version
// searches all selectors in one pass; tests and the fuzz target compare the
// two.

#include "code/CursorMapping.h"
#include "text/TextScan.h"

#include <QHash>
#include <QTextBoundaryFinder>

namespace CursorMappingReference {

inline bool isBoundary(const QString &text, qsizetype pos)
{
    if (pos <= 0 || pos >= text.size())
        return true;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(pos);
    return finder.isAtBoundary();
}

inline qsizetype findCharacter(const QString &text, QStringView target, qsizetype from)
{
    for (qsizetype at = text.indexOf(target, from); at >= 0; at = text.indexOf(target, at + 1)) {
        if (isBoundary(text, at) && isBoundary(text, at + target.size()))
            return at;
    }
    return -1;
}

inline qsizetype findOccurrence(const QString &text, QStringView target, qsizetype n)
{
    qsizetype from = 0;
    for (qsizetype count = 0;; ++count) {
        const qsizetype at = findCharacter(text, target, from);
        if (at < 0 || count == n)
            return at;
        from = at + target.size();
    }
}

inline Ombrel::CursorMapping::RulesetAndProp
rulesetAndPropAt(qsizetype offset, const QString &text, const Ombrel::CSSRulesetList &rulesets)
{
    if (text.isEmpty() || offset < 0)
        return {};
    QHash<QString, qsizetype> seen;
    for (const Ombrel::CSSRulesetPtr &ruleset : rulesets) {
        const QString selector =
            Ombrel::TextScan::trimmedWhitespace(ruleset->selector()).toString();
        if (selector.isEmpty())
            continue;
        const qsizetype n = seen.value(selector, 0);
        seen.insert(selector, n + 1);
        const qsizetype start = findOccurrence(text, selector, n);
        if (start < 0)
            continue;
        const qsizetype open = findCharacter(text, u"{", start + selector.size());
        const qsizetype close = open < 0 ? -1 : findCharacter(text, u"}", open + 1);
        if (close < 0 || offset < start || offset > close + 1)
            continue;
        Ombrel::CursorMapping::RulesetAndProp hit{ruleset->id(), QUuid()};
        qsizetype pos = open + 1;
        const QString body = text.mid(open + 1, close - open - 1);
        QStringList lines;
        QString line;
        for (qsizetype i = 0; i < body.size(); ++i) {
            if (body[i] == u'\n' && !(i > 0 && body[i - 1] == u'\r')) {
                lines.append(line);
                line.clear();
            } else {
                line += body[i];
            }
        }
        lines.append(line);
        for (const QString &each : lines) {
            const qsizetype lineEnd = pos + each.size();
            if (offset >= pos && offset <= lineEnd) {
                const QString trimmed = Ombrel::TextScan::trimmedWhitespace(each).toString();
                qsizetype leading = 0;
                while (leading < each.size() &&
                       Ombrel::TextScan::isWhitespace(each[leading].unicode()))
                    ++leading;
                const qsizetype trimmedAt = pos + leading;
                for (const Ombrel::CSSProperty &property : ruleset->properties()) {
                    bool found = false;
                    for (const QString &colon : {QStringLiteral(":"), QStringLiteral(" :")}) {
                        const QString prefix = property.name + colon;
                        if (trimmed.startsWith(prefix) &&
                            isBoundary(text, trimmedAt + prefix.size()))
                            found = true;
                    }
                    if (found) {
                        hit.propID = property.id;
                        break;
                    }
                }
                break;
            }
            pos = lineEnd + 1;
        }
        return hit;
    }
    return {};
}

} // namespace CursorMappingReference
