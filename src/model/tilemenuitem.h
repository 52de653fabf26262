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
Q_DECLARE_TYPEINFO(TileMenuItem, Q_RELOCATABLE_TYPE); // lists grow without moving one at a time

size_t qHash(const TileMenuItem &item, size_t seed = 0);
