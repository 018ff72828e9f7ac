#pragma once

#include "CSSProperty.h"
#include "CSSVariables.h"
#include "FontWeight.h"
#include "knowledge/Color.h"

#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QUuid>

#include <memory>
#include <optional>

namespace Ombrel {

class CSSFile;

// One selector with its declarations. Identity is the object (and its id); a
// ruleset is never copied, a duplicate is a new ruleset built from its text.
//
// A ruleset belongs to at most one file at a time, the one whose list took it
// in last; that file hears of every change of its selector and declarations
// before the ruleset's own signals go out, without a connection per ruleset.
class CSSRuleset : public QObject
{
    Q_OBJECT

public:
    explicit CSSRuleset(QString selector, CSSPropertyList properties = {}, QPointF position = {});

    QUuid id() const { return m_id; }

    QString selector() const { return m_selector; }
    void setSelector(const QString &selector);

    const CSSPropertyList &properties() const { return m_properties; }
    void setProperties(const CSSPropertyList &properties);

    // Stored as given and read by nothing: cards are laid out by file order.
    QPointF position() const { return m_position; }
    void setPosition(QPointF position);
    QSizeF dragOffset() const { return m_dragOffset; }
    void setDragOffset(QSizeF offset);

    // The ruleset's text: "{selector} {", one indented line per declaration
    // with a closing ";", and "}", joined by "\n" with no final line break.
    QString cssString() const;
    // The length of that text, and writing it at out, which must have room
    // for it; returns the end. A file's text is sized once and filled in place.
    qsizetype cssStringSize() const { return m_cssStringSize; }
    QChar *writeCssString(QChar *out) const;

    // Readings of the raw values. No cascade: only this ruleset's own
    // declarations and the custom properties of its file count, and every
    // unreadable value quietly gives none, 0 or regular.

    // Raw value of the first declaration whose name equals name when both
    // are lowercased (the first, where CSS would take the last).
    std::optional<QString> value(QStringView name) const;
    std::optional<QString> resolvedValue(QStringView name, const CSSVariables &variables) const;

    // Substitutes var() references, always the leftmost one first. A reference
    // that cannot be resolved stops the substitution and stays as written,
    // with everything to its right. A resolution that would need more than
    // maxSubstitutions replacements or make its text grow past
    // maxResolvedLength code units
    // (cyclic or exploding definitions) gives value back unchanged.
    static QString resolveVars(const QString &value, const CSSVariables &variables, int depth = 0);
    static constexpr int maxSubstitutions = 10'000;
    static constexpr qsizetype maxResolvedLength = 64 * 1024;

    std::optional<Color> resolvedBackgroundColor(const CSSVariables &variables) const;
    std::optional<Color> resolvedTextColor(const CSSVariables &variables) const;
    // At most 999; 0 without a readable single length.
    double resolvedBorderRadius(const CSSVariables &variables) const;
    FontWeight resolvedFontWeight(const CSSVariables &variables) const;

    // The same readings without custom properties.
    std::optional<Color> cssBackgroundColor() const { return resolvedBackgroundColor({}); }
    std::optional<Color> cssTextColor() const { return resolvedTextColor({}); }
    double cssBorderRadius() const { return resolvedBorderRadius({}); }
    FontWeight cssFontWeight() const { return resolvedFontWeight({}); }

    // A length as a plain number: "px", "rem" and "em" removed wherever they
    // stand, no conversion between them. Percentages, other units and lists
    // give none.
    static std::optional<double> cssLength(const QString &text);

Q_SIGNALS:
    void selectorChanged();
    void propertiesChanged();
    void positionChanged();
    void dragOffsetChanged();
    // Emitted after any of the above, for views that redraw wholesale.
    void changed();

private:
    friend class CSSFile;
    // customPropertiesChanged: whether the edit touched a declaration of a
    // custom property, which the file's readings are made of.
    void tellFile(bool customPropertiesChanged, qsizetype sizeBefore);
    qsizetype measureCssString() const;

    const QUuid m_id;
    QString m_selector;
    CSSPropertyList m_properties;
    // Kept with every edit: the file sums the sizes at each keystroke.
    qsizetype m_cssStringSize = 0;
    QPointF m_position;
    QSizeF m_dragOffset{0, 0};
    // The file whose list holds the ruleset; null while none does.
    CSSFile *m_file = nullptr;
};

using CSSRulesetPtr = std::shared_ptr<CSSRuleset>;
using CSSRulesetList = QList<CSSRulesetPtr>;

} // namespace Ombrel
