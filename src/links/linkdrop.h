// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"

#include <QByteArray>

#include <optional>

class QDropEvent;
class QMimeData;

/// Text and files dropped on a tile.
namespace links {

/// What one drag brings: a text, or the address of a file.
struct DroppedItem
{
    enum class Kind { Text, File };
    Kind kind = Kind::Text;
    QByteArray bytes;

    bool operator==(const DroppedItem &) const = default;
};

/// The one item of a drag that counts. Many sources add text to files that only names them again: that is
/// none. Reads the data, which may take a while with a slow source: to be called once, in the drop.
std::optional<DroppedItem> droppedItem(const QMimeData &data);

/// Answers a drag that enters or moves: accepted as a copy when it may hold something for a tile, so that no
/// source deletes what it gave; refused otherwise. Reads no data.
void answerLinkDrag(QDropEvent &event);

/// Takes the item and hands it over once the drop has been answered. True when there is one. To be followed
/// by `answerLinkDrag`.
bool handleLinkDrop(Config &config, const QMimeData &data, const QUuid &tileId);

/// Adds the links found in UTF-8 text to the tile. Nothing for other bytes.
void receiveDroppedText(Config &config, const QByteArray &item, const QUuid &tileId);

/// Links the file of a file address. Nothing for other addresses and for files of another machine.
void receiveDroppedFile(Config &config, const QByteArray &item, const QUuid &tileId);

} // namespace links
