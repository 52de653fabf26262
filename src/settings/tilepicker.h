// SPDX-License-Identifier: MIT
#pragma once

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

    /// `index`: of the tile to show as chosen, -1 for none.
    void setTiles(const QList<TileItem> &tiles, int index);

Q_SIGNALS:
    void activated(int index);

private:
    widgets::SegmentedPicker *m_segments;
    widgets::PopupPicker *m_menu;
};
