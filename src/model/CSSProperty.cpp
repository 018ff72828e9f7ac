#include "CSSProperty.h"

#include "Uuid.h"

#include <QJsonValue>

namespace Ombrel {

CSSProperty::CSSProperty(QString name, QString value, QUuid id)
    : id(id.isNull() ? newUuid() : id), name(std::move(name)), value(std::move(value))
{}

QJsonObject CSSProperty::toJson() const
{
    // QJsonObject keeps its keys sorted, and "id" < "name" < "value" already.
    return QJsonObject{{QStringLiteral("id"), id.toString(QUuid::WithoutBraces).toUpper()},
                       {QStringLiteral("name"), name},
                       {QStringLiteral("value"), value}};
}

std::optional<CSSProperty> CSSProperty::fromJson(const QJsonObject &object)
{
    const QJsonValue idValue = object.value(QLatin1String("id"));
    const QJsonValue nameValue = object.value(QLatin1String("name"));
    const QJsonValue valueValue = object.value(QLatin1String("value"));
    if (!idValue.isString() || !nameValue.isString() || !valueValue.isString())
        return std::nullopt;
    const QUuid id = QUuid::fromString(idValue.toString());
    if (id.isNull())
        return std::nullopt;
    return CSSProperty(nameValue.toString(), valueValue.toString(), id);
}

} // namespace Ombrel
