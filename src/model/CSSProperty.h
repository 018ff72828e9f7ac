#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace Ombrel {

// One declaration, name and value kept exactly as read or typed.
struct CSSProperty
{
    QUuid id;
    QString name;
    QString value;

    CSSProperty() = default;
    // Takes a fresh random id unless one is given.
    CSSProperty(QString name, QString value, QUuid id = {});

    // A custom property, a variable: its name starts with "--".
    bool isCustomProperty() const { return name.startsWith(u"--"); }

    // Equality includes the id: two `color: red` declarations are different.
    friend bool operator==(const CSSProperty &, const CSSProperty &) = default;

    // Keyed form with exactly "id", "name" and "value", in that order.
    QJsonObject toJson() const;
    // Needs all three keys as strings and a valid id; other keys are ignored.
    static std::optional<CSSProperty> fromJson(const QJsonObject &object);
};

using CSSPropertyList = QList<CSSProperty>;

} // namespace Ombrel
