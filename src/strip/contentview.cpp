// SPDX-License-Identifier: MIT
#include "strip/contentview.h"

#include "model/config.h"
#include "platform/floatingwindow.h"
#include "platform/localized.h"
#include "strip/endcap.h"
#include "strip/hometileview.h"
#include "strip/stripmetrics.h"
#include "strip/tile.h"
#include "strip/tilerow.h"
#include "themes/themestore.h"
#include "widgets/windowdrag.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>

#include <algorithm>

using platform::localized;
using strip::tileSize;

ContentView::ContentView(Config &config, StripServices &services)
    : m_config(config)
    , m_vertical(config.isVertical())
    , m_leadingCap(new EndCap(localized("Quit"), this))
    , m_homeTile(new HomeTileView(config, services, this))
    , m_tiles(new TileRow(config, services, this))
    , m_trailingCap(new EndCap(localized("Hide or show tiles"), this))
    , m_spring(1)
{
    setObjectName(QStringLiteral("ContentView"));
    setAccessibleName(QStringLiteral("pondWicket"));
    setMinimumSize(tileSize, tileSize);
    m_leadingCap->setObjectName(QStringLiteral("Quit"));
    m_trailingCap->setObjectName(QStringLiteral("Hide or show tiles"));
    m_clock.start();

    connect(m_leadingCap, &QAbstractButton::clicked, this, &ContentView::quitRequested);
    connect(m_trailingCap, &QAbstractButton::clicked, this, [this] { setTabsVisible(!m_tabsVisible); });
    for (EndCap *cap : {m_leadingCap, m_trailingCap}) {
        connect(cap, &EndCap::contextMenuRequested, this, &ContentView::contextMenuRequested);
        connect(cap, &EndCap::focusStepRequested, this, &ContentView::moveFocus);
    }
    connect(m_homeTile, &HomeTileView::focusStepRequested, this, &ContentView::moveFocus);
    connect(m_tiles, &TileRow::focusStepRequested, this, &ContentView::moveFocus);
    connect(m_tiles, &TileRow::arrangementNeeded, this, &ContentView::layoutElements);
    connect(&config, &Config::redrawNeeded, this, &ContentView::redraw);
    m_frameTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_frameTimer, &QTimer::timeout, this, &ContentView::advanceSpring);
    m_homeTile->setFocus(); // not the first of the row: that one quits
    redraw();
}

void ContentView::setTabsVisible(bool visible)
{
    if (m_tabsVisible == visible)
        return;
    m_tabsVisible = visible;
    m_isCompositing = platform::isCompositing(); // once, not at every frame
    if (visible) {
        m_tiles->discardAll(); // those still sliding away
        m_tiles->sync();
    } else {
        for (Tile *tile : m_tiles->tiles())
            tile->closePopover();
    }
    m_spring.start(visible ? 1 : 0, now());
    const qreal rate = screen() ? screen()->refreshRate() : 60;
    m_frameTimer.start(std::max(1, int(1000 / std::max(rate, 1.0))));
    advanceSpring();
}

void ContentView::advanceSpring()
{
    if (m_spring.isSettled(now())) {
        m_frameTimer.stop();
        if (!m_tabsVisible)
            m_tiles->discardAll();
    }
    layoutElements();
}

double ContentView::now() const
{
    return double(m_clock.nsecsElapsed()) / 1e9;
}

void ContentView::redraw()
{
    const themes::OneLook look;
    m_isCompositing = platform::isCompositing();
    if (m_vertical != m_config.isVertical()) {
        m_vertical = m_config.isVertical();
        m_tiles->discardAll();
        m_homeTile->closeMenu();
    }
    m_leadingCap->setLook(
        {m_vertical ? themes::tabLeadingVerticalImage(m_config) : themes::tabLeadingImage(m_config),
         themes::closeImage(m_config), QImage()});
    m_trailingCap->setLook(
        {m_vertical ? themes::tabTrailingVerticalImage(m_config) : themes::tabTrailingImage(m_config),
         themes::minimizeImage(m_config), QImage()});
    m_homeTile->refresh();
    for (Tile *tile : m_tiles->tiles())
        tile->refresh();
    if (m_tabsVisible)
        m_tiles->sync();
    layoutElements();
    if (m_announcedSize != sizeHint()) {
        m_announcedSize = sizeHint();
        Q_EMIT idealSizeChanged();
    }
}

QSize ContentView::elementsSize() const
{
    const int tiles = int(m_config.tileItems().size()) * tileSize;
    const int length =
        m_leadingCap->length(m_vertical) + tileSize + tiles + m_trailingCap->length(m_vertical);
    return m_vertical ? QSize(tileSize, length) : QSize(length, tileSize);
}

QSize ContentView::sizeHint() const
{
    const QSize ideal(strip::idealLength, strip::tileSize);
    return elementsSize().expandedTo(m_vertical ? ideal.transposed() : ideal);
}

void ContentView::layoutElements()
{
    const int across = m_vertical ? (width() - tileSize) / 2 : (height() - tileSize) / 2;
    int at = 0;
    const auto place = [&](QWidget *widget, int length) {
        widget->setGeometry(m_vertical ? QRect(across, at, tileSize, length)
                                       : QRect(at, across, length, tileSize));
        at += length;
    };
    place(m_leadingCap, m_leadingCap->length(m_vertical));
    place(m_homeTile, tileSize);
    const int room = (m_vertical ? height() : width()) - at - m_trailingCap->length(m_vertical);
    const int shown = std::clamp(qRound(m_spring.position(now()) * m_tiles->length()), 0, std::max(0, room));
    place(m_tiles, shown);
    place(m_trailingCap, m_trailingCap->length(m_vertical));
    m_tiles->arrange(m_vertical, room);
    updateShape();
}

/// The window is its elements and nothing else, so that clicks beside them reach what lies below.
void ContentView::updateShape()
{
    const auto shapeOf = [this](const widgets::ImageButton *button) {
        return m_isCompositing ? QRegion(button->rect()) : button->opaqueRegion();
    };
    QRegion shape;
    for (const widgets::ImageButton *button :
         {static_cast<widgets::ImageButton *>(m_leadingCap), static_cast<widgets::ImageButton *>(m_homeTile),
          static_cast<widgets::ImageButton *>(m_trailingCap)})
        shape += shapeOf(button).translated(button->pos());
    QRegion tiles;
    for (const Tile *tile : m_tiles->tiles())
        tiles += shapeOf(tile).translated(tile->pos());
    shape += tiles.intersected(m_tiles->rect()).translated(m_tiles->pos());
    if (shape == mask())
        return;
    setMask(shape);
    Q_EMIT shapeChanged();
}

void ContentView::moveFocus(int step)
{
    QList<QWidget *> order = {m_leadingCap, m_homeTile};
    for (Tile *tile : m_tiles->tiles())
        order.append(tile);
    order.append(m_trailingCap);
    const qsizetype index = order.indexOf(focusWidget());
    const qsizetype next = std::clamp<qsizetype>(index + step, 0, order.size() - 1);
    order.at(next)->setFocus(Qt::TabFocusReason);
    if (const auto *tile = qobject_cast<Tile *>(order.at(next)))
        m_tiles->scrollTo(*tile);
}

void ContentView::wheelEvent(QWheelEvent *event)
{
    const QPoint turn = event->angleDelta();
    constexpr int notch = 120; // of the toolkit's units, for one tile
    m_tiles->scrollBy(-(turn.y() ? turn.y() : turn.x()) * tileSize / notch);
}

void ContentView::closeEvent(QCloseEvent *)
{
    Q_EMIT quitRequested();
}

void ContentView::resizeEvent(QResizeEvent *)
{
    layoutElements();
}

void ContentView::showEvent(QShowEvent *event)
{
    if (event->spontaneous())
        return;
    redraw();
    m_tiles->openThoseThatAsk();
}

bool ContentView::event(QEvent *event)
{
    // A theme file that was replaced meanwhile shows when the user comes back to the strip.
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::ApplicationPaletteChange)
        redraw();
    return QWidget::event(event);
}

void ContentView::mousePressEvent(QMouseEvent *event)
{
    m_pressPosition = event->globalPosition().toPoint();
}

void ContentView::mouseMoveEvent(QMouseEvent *event)
{
    widgets::startsWindowDrag(*this, *event, m_pressPosition);
}

void ContentView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        moveFocus(-1);
        break;
    case Qt::Key_Right:
    case Qt::Key_Down:
        moveFocus(1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

/// The toolkit's order is that in which the widgets were made: tiles come last in it.
bool ContentView::focusNextPrevChild(bool next)
{
    moveFocus(next ? 1 : -1);
    return true;
}

void ContentView::contextMenuEvent(QContextMenuEvent *event)
{
    Q_EMIT contextMenuRequested(event->globalPos());
}
