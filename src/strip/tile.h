// SPDX-License-Identifier: MIT
#pragma once

#include "model/tileitem.h"
#include "widgets/imagebutton.h"
#include "widgets/popover.h"

#include <QPointer>

class Config;
struct StripServices;

/// One square of the strip, built from one TileItem value and thrown away when that value changes. Its copy's
/// tileMenuVisible alone decides whether the popover is open; the one in Config only gives the start value.
class Tile : public widgets::ImageButton
{
    Q_OBJECT

public:
    Tile(Config &config, const TileItem &tileItem, StripServices &services, QWidget *parent);

    const TileItem &tileItem() const { return m_builtFrom; }
    bool isPopoverActive() const;
    /// Asks the themes for the pictures again.
    void refresh();
    /// Opens the popover of a new view whose item asks for it.
    void openIfAsked(widgets::Popover::Activation activation);
    void closePopover();
    /// Ends the view's part on the screen before it is deleted.
    void discard();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void handleClick();
    void openPopover(widgets::Popover::Activation activation);

    Config &m_config;
    StripServices &m_services;
    TileItem m_builtFrom; ///< what the strip finds this view by
    bool m_tileMenuVisible; ///< the copy's field: the popover is open
    QPointer<widgets::Popover> m_popover;
};
