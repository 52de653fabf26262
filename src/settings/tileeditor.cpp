// SPDX-License-Identifier: MIT
#include "settings/tileeditor.h"

#include "links/linkdrop.h"
#include "links/tilealias.h"
#include "model/config.h"
#include "model/settingsstore.h"
#include "platform/localized.h"
#include "settings/linktable.h"
#include "settings/linktablemodel.h"
#include "settings/namefield.h"
#include "settings/picturebutton.h"
#include "settings/settingsmetrics.h"
#include "themes/iconstore.h"
#include "widgets/metrics.h"

#include <QDropEvent>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

using platform::localized;

TileEditor::TileEditor(Config &config, QWidget *parent)
    : QWidget(parent)
    , m_config(config)
    , m_name(new NameField(this))
    , m_links(new LinkTableModel(config, this))
    , m_table(new LinkTable(*m_links, this))
    , m_note(
          new QLabel(localized("Tiles with a single item will behave as buttons rather than menus."), this))
{
    setObjectName(QStringLiteral("TileEditor"));
    setAcceptDrops(true);
    const auto iconNames = [this] {
        QStringList names = themes::currentThemeIconNames(m_config);
        std::sort(names.begin(), names.end());
        return names;
    };
    m_icon = new PictureButton(
        localized("Tile icon"), settings::tileIconSize, iconNames,
        [this](const QString &name) { return themes::iconImage(m_config, name); }, this);
    m_icon->setObjectName(QStringLiteral("Tile icon"));
    connect(m_icon, &PictureButton::picked, this, &TileEditor::setIcon);
    connect(m_name, &NameField::nameEdited, this, &TileEditor::setName);
    connect(m_table, &LinkTable::removeRequested, this, &TileEditor::removeLink);

    auto *header = new QHBoxLayout;
    header->setSpacing(0);
    header->addWidget(m_icon);
    header->addWidget(m_name, 1);

    QFont font = m_note->font();
    font.setPixelSize(widgets::captionFontSize);
    font.setItalic(true);
    m_note->setFont(font);
    m_note->setObjectName(QStringLiteral("Single item note"));
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_note->setWordWrap(true);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(widgets::stackSpacing);
    column->addLayout(header);
    column->addWidget(m_table, 1);
    column->addWidget(m_note);
    setTabOrder(m_icon, m_name);
    setTabOrder(m_name, m_table);
}

void TileEditor::setTile(const TileItem &tile)
{
    m_tileID = tile.id;
    m_icon->setCurrent(tile.iconName);
    // Touched only when it differs: the cursor, and what an input method has pending, stay.
    if (m_name->text() != tile.tileName) {
        m_name->setText(tile.tileName);
        m_name->home(false); // a name that is too long shows its start
    }
    m_table->setAccessibleName(tile.tileName);
    m_links->setTile(tile);
    m_note->setVisible(tile.tileMenuItems.size() == 1);
}

void TileEditor::setIcon(const QString &name)
{
    if (m_config.editTile(m_tileID, [&name](TileItem &tile) { tile.iconName = name; }))
        model::saveSettings(m_config);
}

void TileEditor::setName(const QString &text)
{
    if (m_config.editTile(m_tileID, [&text](TileItem &tile) { tile.tileName = text; }))
        model::saveSettings(m_config);
}

void TileEditor::removeLink(const QUuid &link)
{
    const TileItem *tile = m_config.tile(m_tileID);
    if (!tile)
        return;
    const auto isIt = [&link](const TileMenuItem &item) { return item.id == link; };
    const auto found = std::find_if(tile->tileMenuItems.cbegin(), tile->tileMenuItems.cend(), isIt);
    if (found == tile->tileMenuItems.cend())
        return;
    links::recycleAliasFile(m_config, *found);
    m_config.editTile(m_tileID, [&isIt](TileItem &edited) {
        QList<TileMenuItem> &links = edited.tileMenuItems;
        const auto at = std::find_if(links.cbegin(), links.cend(), isIt);
        if (at != links.cend())
            links.erase(at);
    });
    model::saveSettings(m_config);
}

void TileEditor::dragEnterEvent(QDragEnterEvent *event)
{
    links::answerLinkDrag(*event);
}

void TileEditor::dragMoveEvent(QDragMoveEvent *event)
{
    links::answerLinkDrag(*event);
}

void TileEditor::dropEvent(QDropEvent *event)
{
    if (links::handleLinkDrop(m_config, *event->mimeData(), m_tileID))
        links::answerLinkDrag(*event);
}
