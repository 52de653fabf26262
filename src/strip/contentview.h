// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/spring.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <optional>

class Config;
class EndCap;
class HomeTileView;
class TileRow;
struct StripServices;

/// The strip: its elements packed along one axis from the leading (or top) edge of the window. What the
/// elements leave free is not part of the window's shape.
class ContentView : public QWidget
{
    Q_OBJECT

public:
    ContentView(Config &config, StripServices &services);

    bool isVertical() const { return m_vertical; }
    bool tabsVisible() const { return m_tabsVisible; }
    void setTabsVisible(bool visible);

    /// The size that the strip asks of its window: 1024 by 44, or longer when there is more to show.
    QSize sizeHint() const override;
    /// Without what stays empty; all tiles shown.
    QSize elementsSize() const;
    /// Shows everything as Config and the theme files are now.
    void redraw();

Q_SIGNALS:
    /// By the button or by closing the window.
    void quitRequested();
    void contextMenuRequested(QPoint globalPosition);
    /// The mask is another.
    void shapeChanged();
    /// sizeHint changed with the direction or the number of tiles.
    void idealSizeChanged();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool event(QEvent *event) override;

private:
    void layoutElements();
    void updateShape();
    void advanceSpring();
    void moveFocus(int step);
    double now() const;

    Config &m_config;
    bool m_vertical;
    bool m_tabsVisible = true;
    bool m_isCompositing = false; ///< at the last redraw
    EndCap *m_leadingCap;
    HomeTileView *m_homeTile;
    TileRow *m_tiles;
    EndCap *m_trailingCap;
    QSize m_announcedSize;
    widgets::Spring m_spring; ///< shown length of the tiles as a share of their whole length
    QTimer m_frameTimer; ///< runs only while the spring does
    QElapsedTimer m_clock;
    std::optional<QPoint> m_pressPosition;
};
