// SPDX-License-Identifier: MIT
#include "strip/tile.h"

#include "links/linkdrop.h"
#include "links/openlink.h"
#include "model/config.h"
#include "strip/services.h"
#include "strip/stripmetrics.h"
#include "strip/tilepopover.h"
#include "themes/iconstore.h"
#include "themes/themestore.h"
#include "widgets/plaintext.h"

#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>

using widgets::Popover;

Tile::Tile(Config &config, const TileItem &tileItem, StripServices &services, QWidget *parent)
    : ImageButton(parent)
    , m_config(config)
    , m_services(services)
    , m_builtFrom(tileItem)
    , m_tileMenuVisible(tileItem.tileMenuVisible)
{
    setObjectName(QStringLiteral("Tile"));
    setFixedSize(strip::tileSize, strip::tileSize);
    setAccessibleName(tileItem.tileName);
    setAcceptDrops(true);
    const bool isButton = tileItem.tileMenuItems.size() == 1 && !tileItem.showsScratchpad;
    setToolTip(widgets::plainToolTip(isButton ? tileItem.tileName + QLatin1Char('\n')
                                             + tileItem.tileMenuItems.first().itemName
                                              : tileItem.tileName));
    connect(this, &QAbstractButton::clicked, this, &Tile::handleClick);
    refresh();
}

void Tile::refresh()
{
    setLook({m_config.isVertical() ? themes::tileVerticalImage(m_config) : themes::tileImage(m_config),
             themes::iconImage(m_config, m_builtFrom.iconName), QImage()});
}

bool Tile::isPopoverActive() const
{
    return m_popover && m_popover->isActiveWindow();
}

void Tile::closePopover()
{
    m_tileMenuVisible = false;
    if (!m_popover)
        return;
    m_popover->hide();
    m_popover->deleteLater(); // one of its own buttons may be what closes it
    m_popover.clear();
}

void Tile::discard()
{
    closePopover();
    hide();
    deleteLater();
}

void Tile::handleClick()
{
    const bool asksForMenu = QGuiApplication::keyboardModifiers() & Qt::AltModifier;
    if (!asksForMenu && m_builtFrom.tileMenuItems.size() == 1 && !m_builtFrom.showsScratchpad)
        links::openLink(m_builtFrom.tileMenuItems.first(), m_services.opener);
    else
        openPopover(Popover::Activation::TakeFocus);
}

void Tile::contextMenuEvent(QContextMenuEvent *)
{
    // Several window managers keep Alt and a click for themselves: the right button and the menu key stand
    // in.
    openPopover(Popover::Activation::TakeFocus);
}

void Tile::openIfAsked(Popover::Activation activation)
{
    if (m_tileMenuVisible)
        openPopover(activation);
}

void Tile::openPopover(Popover::Activation activation)
{
    m_tileMenuVisible = true;
    if (m_popover)
        return;
    m_popover = new Popover(*this, m_config.isVertical() ? Popover::Side::Right : Popover::Side::Above);
    m_popover->setObjectName(QStringLiteral("TilePopover"));
    m_popover->setAccessibleName(m_builtFrom.tileName);
    m_popover->setWindowTitle(m_builtFrom.tileName);
    m_popover->setContent(new TilePopover(m_config, m_builtFrom, m_services));
    connect(m_popover, &Popover::dismissed, this, &Tile::closePopover);
    m_popover->open(activation);
}

void Tile::dragEnterEvent(QDragEnterEvent *event)
{
    links::answerLinkDrag(*event);
}

void Tile::dragMoveEvent(QDragMoveEvent *event)
{
    links::answerLinkDrag(*event);
}

void Tile::dropEvent(QDropEvent *event)
{
    links::handleLinkDrop(m_config, *event->mimeData(), m_builtFrom.id);
    links::answerLinkDrag(*event);
}
