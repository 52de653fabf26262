// SPDX-License-Identifier: MIT
#include "strip/hometileview.h"

#include "links/openlink.h"
#include "model/config.h"
#include "model/hosts.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "platform/localized.h"
#include "platform/report.h"
#include "platform/uri.h"
#include "strip/services.h"
#include "strip/stripmetrics.h"
#include "themes/imagecatalog.h"
#include "themes/palette.h"
#include "themes/symbolimage.h"
#include "themes/themestore.h"
#include "widgets/metrics.h"
#include "widgets/rowbutton.h"

#include <QContextMenuEvent>
#include <QDate>
#include <QGuiApplication>
#include <QVBoxLayout>

#include <chrono>

using platform::localizable;
using platform::localized;
using widgets::Popover;

namespace {

constexpr int symbolSize = 18; // points

} // namespace

HomeTileView::HomeTileView(Config &config, StripServices &services, QWidget *parent, Today today)
    : ImageButton(parent)
    , m_config(config)
    , m_services(services)
    , m_today(today ? std::move(today) : [] { return QDate::currentDate().day(); })
    , m_currentDay(m_today())
{
    setObjectName(QStringLiteral("HomeTileView"));
    setFixedSize(strip::tileSize, strip::tileSize);
    setAccessibleName(localized("Home"));
    setToolTip(localized("Home"));
    m_dayTimer.setInterval(std::chrono::seconds(60));
    m_dayTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_dayTimer, &QTimer::timeout, this, &HomeTileView::updateDay);
    connect(this, &QAbstractButton::clicked, this, &HomeTileView::handleClick);
    refresh();
}

void HomeTileView::refresh()
{
    widgets::ImageLook look;
    look.background =
        m_config.isVertical() ? themes::tileVerticalImage(m_config) : themes::tileImage(m_config);
    if (m_config.showsDate()) {
        look.icon = themes::calendarImage(m_config);
        look.overlay = themes::builtInImage(QStringLiteral("calendar-%1").arg(m_currentDay));
    } else {
        look.icon = themes::homeImage(m_config);
    }
    setLook(look);
    setAccessibleDescription(m_config.showsDate() ? QString::number(m_currentDay) : QString());
}

void HomeTileView::showEvent(QShowEvent *)
{
    updateDay();
    m_dayTimer.start();
}

void HomeTileView::hideEvent(QHideEvent *)
{
    m_dayTimer.stop();
}

void HomeTileView::openSupport()
{
    const QString page = model::supportPage();
    if (platform::parseUriReference(page))
        m_services.opener.openAddress(page);
    else
        platform::report(QStringLiteral("Invalid URL"));
    closeMenu();
}

void HomeTileView::updateDay()
{
    const int day = m_today();
    if (day == m_currentDay)
        return;
    m_currentDay = day;
    refresh();
}

void HomeTileView::handleClick()
{
    if (m_menu)
        closeMenu();
    else
        openMenu(QGuiApplication::keyboardModifiers() & Qt::AltModifier ? Extras::Folders : Extras::None);
}

void HomeTileView::contextMenuEvent(QContextMenuEvent *)
{
    // Stands in for a click with Alt, which several window managers keep for themselves.
    if (m_menu)
        closeMenu();
    else
        openMenu(Extras::Folders);
}

void HomeTileView::openMenu(Extras extras)
{
    m_menu = new Popover(*this, m_config.isVertical() ? Popover::Side::Right : Popover::Side::Above);
    m_menu->setObjectName(QStringLiteral("HomeMenu"));
    m_menu->setAccessibleName(localized("Home"));
    m_menu->setWindowTitle(localized("Home"));
    m_menu->setContent(makeMenu(extras));
    connect(m_menu, &Popover::dismissed, this, &HomeTileView::closeMenu);
    m_menu->open(Popover::Activation::TakeFocus);
}

void HomeTileView::closeMenu()
{
    if (!m_menu)
        return;
    m_menu->hide();
    m_menu->deleteLater(); // one of its own buttons may be what closes it
    m_menu.clear();
}

QWidget *HomeTileView::makeMenu(Extras extras)
{
    auto *menu = new QWidget;
    auto *column = new QVBoxLayout(menu);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(widgets::stackSpacing);
    const auto add = [&](const char *label, const char *symbol, const char *colour, auto action) {
        auto *button = new widgets::RowButton(localized(label), menu);
        button->setObjectName(QString::fromLatin1(label));
        if (symbol) {
            button->setPicture(themes::symbolImage(QString::fromLatin1(symbol),
                                                   themes::paletteColor(QString::fromLatin1(colour)),
                                                   symbolSize, devicePixelRatioF()));
        }
        connect(button, &QAbstractButton::clicked, this, action);
        column->addWidget(button);
    };
    if (m_config.tileItems().size() < model::maxTileCount) {
        add(localizable("Add tile"), "plus.square", "violet", [this] {
            model::addTile(m_config);
            closeMenu();
        });
    }
    add(localizable("Settings"), "gear", "blue", [this] { m_services.openSettings(); });
    add(localizable("Support"), "safari", "green", [this] { openSupport(); });
    if (extras == Extras::Folders) {
        const auto openFolder = [this] { m_services.opener.openFile(model::applicationFolder(m_config)); };
        add(localizable("Open Settings Folder"), nullptr, nullptr, openFolder);
        add(localizable("Open Theme Folder"), nullptr, nullptr, openFolder);
    }
    return menu;
}
