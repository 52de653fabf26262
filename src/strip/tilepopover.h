// SPDX-License-Identifier: MIT
#pragma once

#include "model/tileitem.h"

#include <QWidget>

class Config;
class QMenu;
struct StripServices;
namespace platform {
class FilePanel;
}

/// What a tile's popover holds: the name with the menu of actions, the links, the notes.
class TilePopover : public QWidget
{
    Q_OBJECT

public:
    TilePopover(Config &config, const TileItem &tileItem, StripServices &services);

private:
    QWidget *makeHeader();
    void fillActions(QMenu &menu);
    void askWith(void (*ask)(Config &, const QUuid &, platform::FilePanel &));
    void toggleNotes();

    Config &m_config;
    StripServices &m_services;
    TileItem m_tileItem;
};
