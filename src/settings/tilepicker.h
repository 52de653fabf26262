// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>
#include <QWidget>

struct TileItem;
namespace widgets {
class PopupPicker;
class SegmentedPicker;
} // namespace widgets

/// Shows the tiles by name: a few as a row of segments, more as a menu.
class TilePicker : public QWidget
{
    Q_OBJECT

public:
    explicit TilePicker(QWidget *parent);

    /// `chosen`: the tile to show as chosen, null for none.
    void setTiles(const QList<TileItem> &tiles, const TileItem *chosen);

Q_SIGNALS:
    void activated(const QUuid &tile);

private:
    QList<QUuid> m_ids; ///< of the tiles that are shown, which may be gone already
    widgets::SegmentedPicker *m_segments;
    widgets::PopupPicker *m_menu;
};
