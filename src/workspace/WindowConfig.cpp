#include "WindowConfig.h"

#include "model/Uuid.h"

#include <QJsonValue>

namespace Ombrel {

namespace {

const QString idKey = QStringLiteral("id");
const QString startEmptyKey = QStringLiteral("startEmpty");
const QString folderKey = QStringLiteral("folderURLPath");
const QString selectedFileKey = QStringLiteral("selectedFilePath");

// nullopt inside nullopt: the value is of the wrong type.
std::optional<std::optional<QString>> optionalString(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull())
        return std::optional<QString>();
    if (!value.isString())
        return std::nullopt;
    return std::optional<QString>(value.toString());
}

} // namespace

WindowConfig::WindowConfig(bool startEmpty, std::optional<QString> folderURLPath,
                           std::optional<QString> selectedFilePath, QUuid id)
    : id(id.isNull() ? newUuid() : id), startEmpty(startEmpty),
      folderURLPath(std::move(folderURLPath)), selectedFilePath(std::move(selectedFilePath))
{}

QJsonObject WindowConfig::toJson() const
{
    QJsonObject object{{idKey, id.toString(QUuid::WithoutBraces).toUpper()},
                       {startEmptyKey, startEmpty}};
    if (folderURLPath)
        object.insert(folderKey, *folderURLPath);
    if (selectedFilePath)
        object.insert(selectedFileKey, *selectedFilePath);
    return object;
}

std::optional<WindowConfig> WindowConfig::fromJson(const QJsonObject &object)
{
    const QJsonValue idValue = object.value(idKey);
    const QJsonValue startEmptyValue = object.value(startEmptyKey);
    if (!idValue.isString() || !startEmptyValue.isBool())
        return std::nullopt;
    const QUuid id = QUuid::fromString(idValue.toString());
    const auto folder = optionalString(object, folderKey);
    const auto selectedFile = optionalString(object, selectedFileKey);
    if (id.isNull() || !folder || !selectedFile)
        return std::nullopt;
    return WindowConfig(startEmptyValue.toBool(), *folder, *selectedFile, id);
}

size_t qHash(const WindowConfig &config, size_t seed) noexcept
{
    return qHashMulti(seed, config.id, config.startEmpty, config.folderURLPath.has_value(),
                      config.folderURLPath.value_or(QString()), config.selectedFilePath.has_value(),
                      config.selectedFilePath.value_or(QString()));
}

} // namespace Ombrel
