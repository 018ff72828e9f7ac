#pragma once

#include <QHashFunctions>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace Ombrel {

// A request for a window and what it should show. Every request has its own
// id, so two requests for one folder still make two windows.
struct WindowConfig
{
    QUuid id;
    // The window starts with no folder and does not restore the session.
    bool startEmpty = false;
    // Path of the folder to open.
    std::optional<QString> folderURLPath;
    // Full path of the file to select in it.
    std::optional<QString> selectedFilePath;

    // Takes a fresh id unless one is given.
    explicit WindowConfig(bool startEmpty = false, std::optional<QString> folderURLPath = {},
                          std::optional<QString> selectedFilePath = {}, QUuid id = {});

    friend bool operator==(const WindowConfig &, const WindowConfig &) = default;

    // Keyed form: "id" and "startEmpty" always, each path only when present.
    QJsonObject toJson() const;
    // Needs "id" as a valid id and "startEmpty" as a boolean; a path that is
    // missing or null is absent, and one of another type fails the whole.
    static std::optional<WindowConfig> fromJson(const QJsonObject &object);
};

// Combines all four fields in their order.
size_t qHash(const WindowConfig &config, size_t seed = 0) noexcept;

} // namespace Ombrel
