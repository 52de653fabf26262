// SPDX-License-Identifier: MIT
#include "model/tilemenuitem.h"

#include <QHashFunctions>

size_t qHash(const TileMenuItem &item, size_t seed)
{
    return qHashMulti(seed, item.id, item.itemString, item.itemName);
}
