// SPDX-License-Identifier: MIT
#include "model/tiles.h"

#include "model/defaultcontent.h"
#include "model/settingsstore.h"
#include "model/uuidtext.h"
#include "platform/files.h"
#include "platform/localized.h"
#include "platform/report.h"
#include "platform/uri.h"

namespace model {

namespace {

void ensureFolder(const QString &path)
{
    platform::Error error;
    if (!platform::itemExists(path) && !platform::makeFolder(path, &error))
        platform::report(error.description());
}

} // namespace

void addTile(Config &config)
{
    const qsizetype count = config.tileItems().size();
    if (count >= maxTileCount)
        return;
    // A UUID of its own, unrelated to the tile's id.
    const QString folder = tilesFolder(config) + QStringLiteral("/Tile-") + uuidText(QUuid::createUuid());
    const TileItem tile = {.iconName = QStringLiteral("default"),
                           .tileName = defaultTileName(count),
                           .tileDirectory = platform::fileUri(folder),
                           .scratchpadText = {},
                           .tileMenuItems = defaultTileLinks(count)};
    config.setTileItems(config.tileItems() + QList<TileItem>{tile});
    saveSettings(config);
    createTileFolder(tile.tileDirectory);
}

void removeTile(Config &config, const QUuid &id)
{
    const TileItem *tile = config.tile(id);
    if (!tile)
        return;
    QList<TileItem> items = config.tileItems();
    items.removeAt(tile - config.tileItems().constData());
    config.setTileItems(items);
    saveSettings(config);
}

QString tilesFolder(const Config &config)
{
    return applicationFolder(config) + u'/' + platform::localizedFileName("Tiles");
}

void ensureTilesFolder(const Config &config)
{
    ensureFolder(tilesFolder(config));
}

void createTileFolder(const QString &tileDirectory)
{
    ensureFolder(platform::pathOfFileUri(tileDirectory).value_or(QString()));
}

QString tileFolderPath(const TileItem &tile)
{
    return platform::pathOfFileUri(tile.tileDirectory).value_or(QString());
}

QString tileFilePath(const TileItem &tile, const QString &fileName)
{
    const QString folder = tileFolderPath(tile);
    if (folder.isEmpty())
        return QString();
    return folder.endsWith(u'/') ? folder + fileName : folder + u'/' + fileName;
}

} // namespace model
