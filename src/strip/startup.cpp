// SPDX-License-Identifier: MIT
#include "strip/startup.h"

#include "model/config.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "platform/files.h"
#include "platform/report.h"
#include "themes/iconstore.h"
#include "themes/themestore.h"

namespace strip {

namespace {

constexpr int sampleTileCount = 3;

/// The record of a file that decodes and names a theme.
std::optional<SettingsData> usableSettings(const Config &config)
{
    const QString path = model::settingsFileURL(config);
    if (!platform::itemExists(path))
        return std::nullopt;
    platform::Error error;
    std::optional<SettingsData> settings = model::readSettingsFile(path, &error);
    if (!settings)
        platform::report(error.description());
    else if (settings->currentTheme.isEmpty())
        settings.reset();
    return settings;
}

} // namespace

void loadOrCreateSettings(Config &config)
{
    if (const std::optional<SettingsData> settings = usableSettings(config)) {
        model::assignSettings(config, *settings); // not loadSettings(): a large file would be read twice
        themes::applyAppIcon(config);
        return;
    }
    model::writeDefaultSettings(config);
    themes::applyAppIcon(config);
    themes::installBuiltInThemes(config);
    model::ensureTilesFolder(config);
    if (config.tileItems().isEmpty()) {
        for (int i = 0; i < sampleTileCount; ++i)
            model::addTile(config);
    }
}

} // namespace strip
