// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"

namespace platform {
class FilePanel;
}

/// Links to applications, documents and folders: each has an alias file in its tile's folder.
/// Targets are absolute paths in bytes, since a file's name need not be UTF-8.
namespace links {

/// Writes an alias file of that name into the tile's folder; a failure is reported. Nothing when the tile is
/// gone.
void createAlias(const Config &config, const QUuid &tileId, const QByteArray &target,
                 const QString &aliasName);

/// Adds a link to the target at the end of the tile's and saves, also when its alias file could not be
/// written. Nothing when the tile is gone.
void linkFile(Config &config, const QUuid &tileId, const QByteArray &target);

/// Asks for an application, a file or a folder and links it.
void linkApplicationOrFile(Config &config, const QUuid &tileId, platform::FilePanel &panel);

/// Moves the alias file of a link that is about to be removed to the Trash, in the background. Only while the
/// link leads somewhere, and never anything but an alias file or a file in a tile's folder: the link may hold
/// the path of the user's own file or folder, which stays untouched. Where there is no Trash an alias file is
/// deleted.
void recycleAliasFile(const Config &config, const TileMenuItem &link);

/// The label of a new link: the target's name without its extension, letters, marks and numbers only.
QString linkName(const QByteArray &target);

} // namespace links
