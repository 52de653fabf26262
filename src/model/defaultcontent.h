// SPDX-License-Identifier: MIT
#pragma once

#include "model/tilemenuitem.h"

#include <QList>

/// What a new tile starts with. It follows the number of tiles there are before it, not which tiles they are.
namespace model {

QString defaultTileName(qsizetype count);

/// Fresh links on every call: no two share an id.
QList<TileMenuItem> defaultTileLinks(qsizetype count);

} // namespace model
