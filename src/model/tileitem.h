// SPDX-License-Identifier: MIT
#pragma once

#include "model/tilemenuitem.h"

#include <QList>
#include <QString>
#include <QUuid>

/// One tile of the strip. Equal only when all eight fields are: the strip keeps a tile's view exactly as long
/// as an equal value is in the list.
struct TileItem
{
    QUuid id = QUuid::createUuid();
    QString iconName; ///< a file name in the theme's icon folder without its extension, or "default"
    QString tileName;
    QString tileDirectory; ///< file URL of the tile's own folder, kept as the text that was read
    bool showsScratchpad = false;
    QString scratchpadText; ///< written back as it was read; the notes lie in a file of their own
    QList<TileMenuItem> tileMenuItems;
    bool tileMenuVisible = false; ///< the tile's popover is asked for; never stored

    bool operator==(const TileItem &) const = default;
};
Q_DECLARE_TYPEINFO(TileItem, Q_RELOCATABLE_TYPE); // lists grow without moving one at a time

size_t qHash(const TileItem &item, size_t seed = 0);
