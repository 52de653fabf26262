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

/// True when there is a file that decodes and names a theme.
bool hasUsableSettings(const Config &config)
{
    const QString path = model::settingsFileURL(config);
    if (!platform::itemExists(path))
        return false;
    platform::Error error;
    const std::optional<SettingsData> settings = model::readSettingsFile(path, &error);
    if (!settings) {
        platform::report(error.description());
        return false;
    }
    return !settings->currentTheme.isEmpty();
}

} // namespace

void loadOrCreateSettings(Config &config)
{
    if (hasUsableSettings(config)) {
        model::loadSettings(config);
        themes::applyAppIcon(config);
        return;
    }
    model::writeDefaultSettings(config);
    themes::installBuiltInThemes(config);
    model::ensureTilesFolder(config);
    if (config.tileItems().isEmpty()) {
        for (int i = 0; i < sampleTileCount; ++i)
            model::addTile(config);
    }
}

} // namespace strip
