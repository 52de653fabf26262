// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"

#include <QByteArrayView>
#include <QStringList>

namespace links {

/// The absolute addresses of all links in UTF-8 text, in order, repeated ones too.
QStringList detectLinks(QByteArrayView text);

/// A link for each different address in the text, in order of first appearance, named after its host.
QList<TileMenuItem> linksFromText(QByteArrayView text);

/// Adds the links at the end of the tile's and saves once, also when there are none. Nothing when the tile is
/// gone.
void appendLinks(Config &config, const QUuid &tileId, const QList<TileMenuItem> &links);

} // namespace links
