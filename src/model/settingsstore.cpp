// SPDX-License-Identifier: MIT
#include "model/settingsstore.h"

#include "model/safetycopies.h"
#include "model/settingsjson.h"
#include "platform/files.h"
#include "platform/report.h"

namespace model {

namespace {

/// Settings are a few kilobytes. A file past this size is none, and reading it would only exhaust the memory.
constexpr qint64 maxFileSize = 256 << 20; // bytes

bool writeSettings(const Config &config, const QString &path, const SettingsData &data)
{
    const QByteArray bytes = settingsToJson(data);
    keepLastGood(config.stateDirectory(), bytes);
    platform::Error error;
    if (platform::writeInPlace(path, bytes, &error))
        return true;
    platform::report(QStringLiteral("Failed to save JSON data: ") + error.description());
    return false;
}

} // namespace

QString applicationFolder(const Config &config)
{
    return config.documentDirectory() + QStringLiteral("/pondWicket ƒ");
}

QString settingsFileURL(const Config &config)
{
    const QString folder = applicationFolder(config);
    platform::Error error;
    if (!platform::itemExists(folder) && !platform::makeFolder(folder, &error))
        platform::report(error.description());
    return folder + QStringLiteral("/pondWicket-settings.json");
}

std::optional<SettingsData> readSettingsFile(const QString &path, platform::Error *error)
{
    const auto bytes = platform::readWholeFile(path, error, maxFileSize);
    if (!bytes)
        return std::nullopt;
    auto data = settingsFromJson(*bytes, error);
    if (!data && error)
        error->path = path;
    return data;
}

void loadSettings(Config &config)
{
    const QString path = settingsFileURL(config);
    if (!platform::itemExists(path)) {
        platform::report(QStringLiteral("Settings file not found."));
        return;
    }
    platform::Error error;
    const auto data = readSettingsFile(path, &error);
    if (!data) {
        platform::report(error.description());
        return;
    }
    assignSettings(config, *data);
}

void assignSettings(Config &config, const SettingsData &data)
{
    config.setCurrentTheme(data.currentTheme);
    config.setAvailableThemes(data.availableThemes);
    config.setShowsDate(data.showsDate);
    config.setDirection(data.direction);
    config.setAppIcon(data.appIcon);
    config.setTileItems(data.tileItems);
}

void saveSettings(const Config &config)
{
    writeSettings(config, settingsFileURL(config), config.stored());
}

void writeDefaultSettings(const Config &config)
{
    const QString path = settingsFileURL(config);
    keepReplaced(config.stateDirectory(), path);
    if (writeSettings(config, path, SettingsData()))
        platform::report(QStringLiteral("New settings file written successfully."));
}

} // namespace model
