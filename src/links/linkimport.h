// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"

namespace platform {
class FilePanel;
}

namespace links {

/// Whether links can be searched for in the file: a readable regular file of text, markup, data or program
/// text, by its name or else by its content. Never waits for a pipe or a device.
bool isImportableTextFile(const QString &path);

/// Adds every link of the file's text to the tile and saves once. Nothing when the file is no importable one;
/// one line "Failed to read file: …" when it cannot be read or is not UTF-8.
void importLinksFromPath(Config &config, const QUuid &tileId, const QString &path);

/// Asks for a file and adds its links.
void importLinksFromFile(Config &config, const QUuid &tileId, platform::FilePanel &panel);

} // namespace links
