// SPDX-License-Identifier: MIT
#include "strip/tilerow.h"

#include "model/config.h"
#include "strip/stripmetrics.h"
#include "strip/tile.h"

#include <QSet>

#include <algorithm>

using strip::tileSize;
using widgets::Popover;

TileRow::TileRow(Config &config, StripServices &services, QWidget *parent)
    : QWidget(parent)
    , m_config(config)
    , m_services(services)
{
}

int TileRow::length() const
{
    return int(m_tiles.size()) * tileSize;
}

/// A view stays while an equal item is in the list, wherever it has moved; every other item gets a new one.
void TileRow::sync()
{
    QList<Tile *> left = m_tiles;
    QList<Tile *> made;
    m_tiles.clear();
    const QList<TileItem> items = m_config.tileItems(); // shared
    for (qsizetype i = 0; i < std::min<qsizetype>(items.size(), strip::mostTileViews); ++i) {
        const TileItem &item = items.at(i);
        const auto kept = std::find_if(left.begin(), left.end(),
                                       [&item](const Tile *tile) { return tile->tileItem() == item; });
        if (kept != left.end()) {
            m_tiles.append(*kept);
            left.erase(kept);
            continue;
        }
        auto *tile = new Tile(m_config, item, m_services, this);
        connect(tile, &Tile::focusStepRequested, this, &TileRow::focusStepRequested);
        m_tiles.append(tile);
        made.append(tile);
    }

    const auto opensAgain = [&made](const QUuid &id) {
        return std::any_of(made.begin(), made.end(), [&id](const Tile *tile) {
            return tile->tileItem().id == id && tile->tileItem().tileMenuVisible;
        });
    };
    // A popover opened by key takes the focus. One that only follows another has it when that one had.
    QSet<QUuid> openUnfocused;
    QUuid focused;
    for (Tile *tile : std::as_const(left)) {
        if (tile->tileItem().tileMenuVisible && !tile->isPopoverActive())
            openUnfocused.insert(tile->tileItem().id);
        if (tile->hasFocus() || tile->isPopoverActive())
            focused = tile->tileItem().id;
        if (tile->isPopoverActive() && !opensAgain(tile->tileItem().id))
            activateWindow(); // else the window manager may choose another program's
        tile->discard();
    }
    if (!made.isEmpty())
        Q_EMIT arrangementNeeded();
    for (Tile *tile : std::as_const(made)) {
        tile->show();
        if (tile->tileItem().id == focused)
            tile->setFocus();
        if (window()->isVisible())
            tile->openIfAsked(openUnfocused.contains(tile->tileItem().id) ? Popover::Activation::LeaveFocus
                                                                          : Popover::Activation::TakeFocus);
    }
}

void TileRow::discardAll()
{
    for (Tile *tile : std::as_const(m_tiles))
        tile->discard();
    m_tiles.clear();
}

void TileRow::openThoseThatAsk()
{
    for (Tile *tile : std::as_const(m_tiles))
        tile->openIfAsked(Popover::Activation::LeaveFocus);
}

void TileRow::arrange(bool vertical, int room)
{
    m_vertical = vertical;
    m_scroll = std::clamp(m_scroll, 0, std::max(0, length() - std::max(0, room)));
    int along = -m_scroll;
    for (Tile *tile : std::as_const(m_tiles)) {
        tile->move(vertical ? QPoint(0, along) : QPoint(along, 0));
        along += tileSize;
    }
}

void TileRow::scrollBy(int points)
{
    m_scroll += points;
    Q_EMIT arrangementNeeded();
}

void TileRow::scrollTo(const Tile &tile)
{
    const int start = m_vertical ? tile.y() : tile.x();
    const int beyond = start + tileSize - (m_vertical ? height() : width());
    if (start < 0)
        scrollBy(start);
    else if (beyond > 0)
        scrollBy(beyond);
}
