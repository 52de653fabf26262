// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRegion>
#include <QWidget>

class Config;
class Tile;
struct StripServices;

/// The tiles of the strip in their order. The row is shorter than they are together while they come and go,
/// and where the screen ends; then it shows some of them.
class TileRow : public QWidget
{
    Q_OBJECT

public:
    TileRow(Config &config, StripServices &services, QWidget *parent);

    const QList<Tile *> &tiles() const { return m_tiles; }
    /// Points along the strip of all tiles together.
    int length() const;
    /// Brings the tiles in line with Config's items.
    void sync();
    void discardAll();
    void openThoseThatAsk();

    /// Puts the tiles side by side. `room` is what the strip has for them at most, in points.
    void arrange(bool vertical, int room);
    void scrollBy(int points);
    /// Scrolls no further than it takes to see the tile whole.
    void scrollTo(const Tile &tile);

Q_SIGNALS:
    /// Not arranged yet: there are new tiles, or the row is scrolled.
    void arrangementNeeded();
    void focusStepRequested(int step);

private:
    Config &m_config;
    StripServices &m_services;
    QList<Tile *> m_tiles; ///< empty while hidden
    bool m_vertical = false;
    int m_scroll = 0; ///< points of the tiles before the part that is seen
};
