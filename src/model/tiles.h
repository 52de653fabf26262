// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"

/// Adding and removing tiles, and the folder that each has on disk.
namespace model {

/// No tile is added past this number. A file may hold more.
constexpr qsizetype maxTileCount = 20;

/// Appends a tile with default content, saves, and makes its folder. Does nothing at the limit.
void addTile(Config &config);

/// Removes the first tile with that id and saves; its folder stays. Does nothing when there is no such tile.
void removeTile(Config &config, const QUuid &id);

/// Path of the folder that holds all tile folders. Only named, not made.
QString tilesFolder(const Config &config);

/// Makes the "Tiles" folder when nothing stands at its path.
void ensureTilesFolder(const Config &config);

/// Makes a tile's own folder, parents included, when nothing stands at its path.
void createTileFolder(const QString &tileDirectory);

/// Path of the tile's folder, without a slash at its end. Empty when `tileDirectory` names no place on this
/// machine.
QString tileFolderPath(const TileItem &tile);

/// Path of a file in the tile's folder. Empty when the tile has none here; opening it then fails as it
/// should.
QString tileFilePath(const TileItem &tile, const QString &fileName);

} // namespace model
