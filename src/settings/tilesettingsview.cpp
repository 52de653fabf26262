// SPDX-License-Identifier: MIT
#include "settings/tilesettingsview.h"

#include "model/config.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "platform/localized.h"
#include "settings/collectionview.h"
#include "settings/settingsmetrics.h"
#include "settings/symbolbutton.h"
#include "settings/tileeditor.h"
#include "settings/tilepicker.h"
#include "widgets/plaintext.h"
#include "widgets/popover.h"

#include <QCheckBox>
#include <QPushButton>

using platform::localized;
using widgets::Popover;

TileSettingsView::TileSettingsView(Config &config, platform::FilePanel &filePanel, QWidget *parent)
    : SettingsPage(parent)
    , m_config(config)
    , m_filePanel(filePanel)
    , m_picker(new TilePicker(this))
    , m_addTile(new SymbolButton(QStringLiteral("plus"), localized("Add tile"), this))
    , m_tileArea(new QWidget(this))
    , m_editor(new TileEditor(config, m_tileArea))
{
    setObjectName(QStringLiteral("TileSettingsView"));
    m_addTile->setObjectName(QStringLiteral("Add tile"));
    connect(m_picker, &TilePicker::activated, this, &TileSettingsView::select);
    connect(m_addTile, &QAbstractButton::clicked, this, [this] { model::addTile(m_config); });

    auto *tileRow = new QHBoxLayout;
    tileRow->addWidget(m_picker);
    tileRow->addWidget(m_addTile);
    tileRow->addStretch();

    QString mnemonics;
    m_scratchpad = new QCheckBox(widgets::withMnemonic(localized("Show scratchpad"), mnemonics), m_tileArea);
    m_scratchpad->setObjectName(QStringLiteral("Show scratchpad"));
    connect(m_scratchpad, &QAbstractButton::clicked, this, &TileSettingsView::setShowsScratchpad);
    m_addItem = new QPushButton(widgets::withMnemonic(localized("Add item"), mnemonics), m_tileArea);
    m_addItem->setObjectName(QStringLiteral("Add item"));
    connect(m_addItem, &QAbstractButton::clicked, this, [this] { setNewItemsMenuVisible(!m_newItemsMenu); });

    auto *sections = new QVBoxLayout(m_tileArea);
    sections->setContentsMargins(0, 0, 0, 0);
    sections->setSpacing(0);
    sections->addWidget(m_editor, 1);
    sections->addSpacing(settings::tileRowSpacing / 2);
    sections->addWidget(m_scratchpad, 0, Qt::AlignLeading);
    sections->addSpacing(settings::sectionSpacing);
    sections->addWidget(m_addItem, 0, Qt::AlignLeading);

    column()->addLayout(tileRow);
    column()->addSpacing(settings::tileRowSpacing);
    column()->addWidget(m_tileArea, 1);
    column()->addStretch();

    connect(&config, &Config::redrawNeeded, this, &TileSettingsView::refresh);
    refresh();
}

const TileItem *TileSettingsView::editedTile() const
{
    return m_selectedTileID ? m_config.tile(*m_selectedTileID) : nullptr;
}

void TileSettingsView::refresh()
{
    const QList<TileItem> &tiles = m_config.tileItems();
    if (!m_selectedTileID && !tiles.isEmpty())
        m_selectedTileID = tiles.first().id;
    const TileItem *tile = editedTile();
    m_picker->setTiles(tiles, tile);
    m_addTile->setVisible(tiles.size() < model::maxTileCount);
    m_tileArea->setVisible(tile);
    if (!tile) {
        setNewItemsMenuVisible(false);
        return;
    }
    m_editor->setTile(*tile);
    m_scratchpad->setChecked(tile->showsScratchpad);
}

void TileSettingsView::select(const QUuid &tile)
{
    m_selectedTileID = tile;
    refresh();
}

void TileSettingsView::setShowsScratchpad(bool shows)
{
    if (m_selectedTileID
        && m_config.editTile(*m_selectedTileID, [shows](TileItem &tile) { tile.showsScratchpad = shows; }))
        model::saveSettings(m_config);
}

void TileSettingsView::setNewItemsMenuVisible(bool visible)
{
    if (m_newItemsMenu) {
        m_newItemsMenu->hide();
        m_newItemsMenu->deleteLater(); // one of its own buttons may be what closes it
        m_newItemsMenu.clear();
    }
    if (!visible || !editedTile())
        return;
    m_newItemsMenu = new Popover(*m_addItem, Popover::Side::Below);
    m_newItemsMenu->setObjectName(QStringLiteral("New items"));
    m_newItemsMenu->setAccessibleName(localized("Add item"));
    m_newItemsMenu->setWindowTitle(localized("Add item"));
    m_newItemsMenu->setContent(new CollectionView(m_config, *m_selectedTileID, m_filePanel));
    connect(m_newItemsMenu, &Popover::dismissed, this, [this] { setNewItemsMenuVisible(false); });
    m_newItemsMenu->open(Popover::Activation::TakeFocus);
}
