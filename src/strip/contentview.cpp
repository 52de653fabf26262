// SPDX-License-Identifier: MIT
#include "strip/contentview.h"

#include "model/config.h"
#include "platform/floatingwindow.h"
#include "platform/localized.h"
#include "strip/endcap.h"
#include "strip/hometileview.h"
#include "strip/stripmetrics.h"
#include "strip/tile.h"
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
using widgets::Popover;

ContentView::ContentView(Config &config, StripServices &services)
    : m_config(config)
    , m_services(services)
    , m_vertical(config.isVertical())
    , m_leadingCap(new EndCap(localized("Quit"), this))
    , m_homeTile(new HomeTileView(config, services, this))
    , m_tileArea(new QWidget(this))
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
        discardTiles(); // those still sliding away
        syncTiles();
    } else {
        for (Tile *tile : std::as_const(m_tiles))
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
            discardTiles();
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
        discardTiles();
        m_homeTile->closeMenu();
    }
    m_leadingCap->setLook(
        {m_vertical ? themes::tabLeadingVerticalImage(m_config) : themes::tabLeadingImage(m_config),
         themes::closeImage(m_config), QImage()});
    m_trailingCap->setLook(
        {m_vertical ? themes::tabTrailingVerticalImage(m_config) : themes::tabTrailingImage(m_config),
         themes::minimizeImage(m_config), QImage()});
    m_homeTile->refresh();
    for (Tile *tile : std::as_const(m_tiles))
        tile->refresh();
    if (m_tabsVisible)
        syncTiles();
    layoutElements();
    if (m_announcedSize != sizeHint()) {
        m_announcedSize = sizeHint();
        Q_EMIT idealSizeChanged();
    }
}

/// A view stays while an equal item is in the list, wherever it has moved; every other item gets a new one.
void ContentView::syncTiles()
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
        auto *tile = new Tile(m_config, item, m_services, m_tileArea);
        connect(tile, &Tile::focusStepRequested, this, &ContentView::moveFocus);
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
        layoutElements();
    for (Tile *tile : std::as_const(made)) {
        tile->show();
        if (tile->tileItem().id == focused)
            tile->setFocus();
        if (isVisible())
            tile->openIfAsked(openUnfocused.contains(tile->tileItem().id) ? Popover::Activation::LeaveFocus
                                                                          : Popover::Activation::TakeFocus);
    }
}

void ContentView::discardTiles()
{
    for (Tile *tile : std::as_const(m_tiles))
        tile->discard();
    m_tiles.clear();
}

int ContentView::tilesLength() const
{
    return int(m_tiles.size()) * tileSize;
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
    const int shown = std::clamp(qRound(m_spring.position(now()) * tilesLength()), 0, std::max(0, room));
    place(m_tileArea, shown);
    place(m_trailingCap, m_trailingCap->length(m_vertical));
    m_scroll = std::clamp(m_scroll, 0, std::max(0, tilesLength() - std::max(0, room)));
    int along = -m_scroll;
    for (Tile *tile : std::as_const(m_tiles)) {
        tile->move(m_vertical ? QPoint(0, along) : QPoint(along, 0));
        along += tileSize;
    }
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
    for (const Tile *tile : std::as_const(m_tiles))
        tiles += shapeOf(tile).translated(tile->pos());
    shape += tiles.intersected(m_tileArea->rect()).translated(m_tileArea->pos());
    if (shape == mask())
        return;
    setMask(shape);
    Q_EMIT shapeChanged();
}

void ContentView::moveFocus(int step)
{
    QList<QWidget *> order = {m_leadingCap, m_homeTile};
    for (Tile *tile : std::as_const(m_tiles))
        order.append(tile);
    order.append(m_trailingCap);
    const qsizetype index = order.indexOf(focusWidget());
    const qsizetype next = std::clamp<qsizetype>(index + step, 0, order.size() - 1);
    order.at(next)->setFocus(Qt::TabFocusReason);

    const QRect tile = order.at(next)->geometry();
    if (order.at(next)->parentWidget() == m_tileArea) {
        const int start = m_vertical ? tile.top() : tile.left();
        const int beyond = start + tileSize - (m_vertical ? m_tileArea->height() : m_tileArea->width());
        if (start < 0)
            scrollTo(m_scroll + start);
        else if (beyond > 0)
            scrollTo(m_scroll + beyond);
    }
}

/// Where the screen is too short for all tiles, those between the home tile and the far cap move.
void ContentView::scrollTo(int position)
{
    m_scroll = position;
    layoutElements();
}

void ContentView::wheelEvent(QWheelEvent *event)
{
    const QPoint turn = event->angleDelta();
    constexpr int notch = 120; // of the toolkit's units, for one tile
    scrollTo(m_scroll - (turn.y() ? turn.y() : turn.x()) * tileSize / notch);
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
    for (Tile *tile : std::as_const(m_tiles))
        tile->openIfAsked(Popover::Activation::LeaveFocus);
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
