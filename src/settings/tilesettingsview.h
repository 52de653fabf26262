// SPDX-License-Identifier: MIT
#pragma once

#include "settings/settingspage.h"

#include <QPointer>
#include <QUuid>

#include <optional>

class Config;
class QCheckBox;
class QPushButton;
class SymbolButton;
class TileEditor;
class TilePicker;
struct TileItem;
namespace platform {
class FilePanel;
}
namespace widgets {
class Popover;
}

/// The second tab: edits one tile at a time. Keeps which one by its id, and nothing of its content.
class TileSettingsView : public SettingsPage
{
    Q_OBJECT

public:
    TileSettingsView(Config &config, platform::FilePanel &filePanel, QWidget *parent);

private:
    const TileItem *editedTile() const;
    void refresh();
    void select(const QUuid &tile);
    void setShowsScratchpad(bool shows);
    void setNewItemsMenuVisible(bool visible);

    Config &m_config;
    platform::FilePanel &m_filePanel;
    /// None until there is a first tile. One that has gone is kept: then no tile is edited.
    std::optional<QUuid> m_selectedTileID;
    TilePicker *m_picker;
    SymbolButton *m_addTile;
    QWidget *m_tileArea;
    TileEditor *m_editor;
    QCheckBox *m_scratchpad;
    QPushButton *m_addItem;
    QPointer<widgets::Popover> m_newItemsMenu;
};
