#pragma once

#include "CSSProperty.h"

#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QUuid>

#include <memory>

namespace Ombrel {

// One selector with its declarations. Identity is the object (and its id); a
// ruleset is never copied, a duplicate is a new ruleset built from its text.
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
    qsizetype cssStringSize() const;
    QChar *writeCssString(QChar *out) const;

Q_SIGNALS:
    void selectorChanged();
    void propertiesChanged();
    void positionChanged();
    void dragOffsetChanged();
    // Emitted after any of the above, for views that redraw wholesale.
    void changed();

private:
    const QUuid m_id;
    QString m_selector;
    CSSPropertyList m_properties;
    QPointF m_position;
    QSizeF m_dragOffset{0, 0};
};

using CSSRulesetPtr = std::shared_ptr<CSSRuleset>;
using CSSRulesetList = QList<CSSRulesetPtr>;

} // namespace Ombrel
