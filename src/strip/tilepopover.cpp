// SPDX-License-Identifier: MIT
#include "strip/tilepopover.h"

#include "links/linkimport.h"
#include "links/tilealias.h"
#include "model/config.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "platform/localized.h"
#include "strip/scratchpadview.h"
#include "strip/services.h"
#include "strip/tilemenu.h"
#include "themes/symbolimage.h"
#include "widgets/elidedlabel.h"
#include "widgets/metrics.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

using platform::localizable;
using platform::localized;

namespace {

constexpr int titleFontSize = 20; // pixels
constexpr int actionSymbolSize = 18; // points

} // namespace

TilePopover::TilePopover(Config &config, const TileItem &tileItem, StripServices &services)
    : m_config(config)
    , m_services(services)
    , m_tileItem(tileItem)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(widgets::stackSpacing);
    // Rows reach further out than all else, for their ring of focus.
    const auto addInset = [column](QWidget *widget) {
        auto *row = new QHBoxLayout;
        row->setContentsMargins(widgets::rowInset, 0, widgets::rowInset, 0);
        row->addWidget(widget);
        column->addLayout(row);
    };
    addInset(makeHeader());
    if (!tileItem.tileMenuItems.isEmpty()) {
        auto *links = new TileMenu(config, tileItem, services, this);
        column->addWidget(links);
        setFocusProxy(links);
    }
    if (tileItem.showsScratchpad) {
        auto *notes = new ScratchpadView(config, tileItem.id, this);
        addInset(notes);
        if (!focusProxy())
            setFocusProxy(notes);
    }
    if (tileItem.tileMenuItems.isEmpty() && !tileItem.showsScratchpad) {
        auto *message = new QLabel(localized("Nothing to see here!"), this);
        QFont font = message->font();
        font.setPixelSize(widgets::captionFontSize);
        font.setItalic(true);
        message->setFont(font);
        message->setForegroundRole(QPalette::PlaceholderText);
        addInset(message);
    }
}

QWidget *TilePopover::makeHeader()
{
    auto *header = new QWidget(this);
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);

    auto *title = new widgets::ElidedLabel(m_tileItem.tileName, header);
    QFont font = title->font();
    font.setPixelSize(titleFontSize);
    font.setBold(true);
    title->setFont(font);
    row->addWidget(title, 1);

    auto *actions = new QToolButton(header);
    actions->setObjectName(QStringLiteral("Actions"));
    actions->setAccessibleName(localized("Actions"));
    actions->setToolTip(localized("Actions"));
    actions->setAutoRaise(true);
    actions->setPopupMode(QToolButton::InstantPopup);
    actions->setFocusPolicy(Qt::StrongFocus);
    actions->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { image: none; }"));
    actions->setIconSize({actionSymbolSize, actionSymbolSize});
    actions->setIcon(QPixmap::fromImage(themes::symbolImage(
        QStringLiteral("ellipsis.circle"), palette().color(QPalette::WindowText), actionSymbolSize)));
    auto *menu = new QMenu(actions);
    // Filled when it is asked for: building it is not part of the click's way to the popover.
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        if (menu->isEmpty())
            fillActions(*menu);
    });
    actions->setMenu(menu);
    row->addWidget(actions);
    return header;
}

void TilePopover::fillActions(QMenu &menu)
{
    const auto add = [&menu, this](const char *label, auto action) {
        connect(menu.addAction(localized(label)), &QAction::triggered, this, action);
    };
    add(localizable("Edit…"), [this] { m_services.openSettings(); });
    add(localizable("Add application or file…"), [this] { askWith(&links::linkApplicationOrFile); });
    add(localizable("Import links from file…"), [this] { askWith(&links::importLinksFromFile); });
    add(m_tileItem.showsScratchpad ? localizable("Hide notes") : localizable("Show notes"),
        [this] { toggleNotes(); });
    add(localizable("Remove tile"), [this] { model::removeTile(m_config, m_tileItem.id); });
}

/// The panels run modally, and the tile with this view of it may be gone when they return: so they are run
/// from the event loop and know nothing of us.
void TilePopover::askWith(void (*ask)(Config &, const QUuid &, platform::FilePanel &))
{
    QMetaObject::invokeMethod(
        &m_config,
        [ask, &config = m_config, id = m_tileItem.id, &panel = m_services.filePanel] {
            ask(config, id, panel);
        },
        Qt::QueuedConnection);
}

void TilePopover::toggleNotes()
{
    const bool found = m_config.editTile(
        m_tileItem.id, [](TileItem &item) { item.showsScratchpad = !item.showsScratchpad; });
    if (found)
        model::saveSettings(m_config);
}
