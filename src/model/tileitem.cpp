// SPDX-License-Identifier: MIT
#include "model/tileitem.h"

#include <QHashFunctions>

size_t qHash(const TileItem &item, size_t seed)
{
    return qHashMulti(seed, item.id, item.iconName, item.tileName, item.tileDirectory, item.showsScratchpad,
                      item.scratchpadText, item.tileMenuItems, item.tileMenuVisible);
}
