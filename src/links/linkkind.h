// SPDX-License-Identifier: MIT
#pragma once

#include "model/tilemenuitem.h"

#include <QColor>
#include <QString>

namespace links {

/// The kind of a link: its address's scheme as written, or for a path "appAlias", "folderAlias" or
/// "documentAlias" by what it leads to, "unknown" when it leads nowhere. A path that cannot be resolved
/// prints one line for each call, and each call asks the disk: ask once for a row and hand the answer on.
QString linkKind(const TileMenuItem &link);

/// True for the three kinds of paths that lead somewhere.
bool isAliasKind(const QString &kind);
/// Name of the symbol drawn before links of the kind: a system symbol, "app.edit" for applications.
QString symbolOfKind(const QString &kind);
/// Its colour.
QColor tintOfKind(const QString &kind);

bool isAlias(const TileMenuItem &link);
QString linkSymbol(const TileMenuItem &link);
QColor linkTint(const TileMenuItem &link);

} // namespace links
