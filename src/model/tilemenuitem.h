// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUuid>

/// One link of a tile.
struct TileMenuItem
{
    QUuid id = QUuid::createUuid();
    QString itemString; ///< an address with a scheme, or the plain path of an alias file
    QString itemName; ///< the label in menus

    bool operator==(const TileMenuItem &) const = default;
};

size_t qHash(const TileMenuItem &item, size_t seed = 0);
