// SPDX-License-Identifier: MIT
#include "strip/commands.h"

#include "links/openlink.h"
#include "model/config.h"
#include "model/hosts.h"
#include "platform/autostart.h"
#include "platform/localized.h"
#include "platform/report.h"
#include "strip/services.h"

#include <QAction>
#include <QMenu>
#include <QWidget>

#include <algorithm>

using platform::localized;

namespace {

constexpr qsizetype tileCommandCount = 10;

/// Shows what is on disk at this moment; a failed change leaves it so.
QAction *startAtLoginAction(QObject *parent)
{
    auto *action = new QAction(localized("Start at login"), parent);
    action->setCheckable(true);
    action->setChecked(platform::startsAtLogin());
    QObject::connect(action, &QAction::triggered, action, [](bool checked) {
        platform::Error error;
        if (!platform::setStartsAtLogin(checked, &error))
            platform::report(error.description());
    });
    return action;
}

} // namespace

Commands::Commands(Config &config, StripServices &services, QWidget &window)
    : QObject(&window)
    , m_config(config)
    , m_window(window)
{
    m_settings = addCommand(localized("Settings"), QStringLiteral("Ctrl+,"));
    connect(m_settings, &QAction::triggered, this, [&services] { services.openSettings(); });
    m_quit = addCommand(localized("Quit"), QStringLiteral("Ctrl+Q"));
    connect(m_quit, &QAction::triggered, this, &Commands::quitRequested);
    m_help = addCommand(QLatin1String("pondWicket ") + localized("Help"), QStringLiteral("Ctrl+?"));
    connect(m_help, &QAction::triggered, this,
            [&services] { services.opener.openAddress(model::supportPage()); });
    connect(&config, &Config::redrawNeeded, this, &Commands::syncTileCommands);
    syncTileCommands();
}

QAction *Commands::addCommand(const QString &text, const QString &shortcut)
{
    auto *action = new QAction(text, &m_window);
    action->setObjectName(text);
    action->setShortcut(QKeySequence(shortcut));
    action->setShortcutContext(Qt::ApplicationShortcut);
    m_window.addAction(action);
    return action;
}

void Commands::syncTileCommands()
{
    if (m_config.showsDate() && !m_calendar) {
        m_calendar = addCommand(localized("Calendar"), QStringLiteral("Ctrl+D"));
        connect(m_calendar, &QAction::triggered, this,
                [this] { m_config.setCalendarMenuVisible(!m_config.calendarMenuVisible()); });
    } else if (!m_config.showsDate() && m_calendar) {
        m_calendar->deleteLater();
        m_window.removeAction(m_calendar);
        m_calendar = nullptr;
    }

    const qsizetype count = std::min(tileCommandCount, m_config.tileItems().size());
    while (m_tileCommands.size() > count) {
        QAction *action = m_tileCommands.takeLast();
        m_window.removeAction(action);
        action->deleteLater();
    }
    while (m_tileCommands.size() < count) {
        const qsizetype index = m_tileCommands.size();
        QAction *action = addCommand({}, QStringLiteral("Ctrl+%1").arg((index + 1) % tileCommandCount));
        // By id at the moment of the press: the tile may have left since the menu was built.
        connect(action, &QAction::triggered, this,
                [this, action] { toggleTileMenu(action->data().toUuid()); });
        m_tileCommands.append(action);
    }
    for (qsizetype i = 0; i < count; ++i) {
        const TileItem &tile = m_config.tileItems().at(i);
        QString text = tile.tileName;
        m_tileCommands.at(i)->setText(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        m_tileCommands.at(i)->setData(tile.id);
    }
}

void Commands::toggleTileMenu(const QUuid &id)
{
    m_window.setAttribute(Qt::WA_KeyboardFocusChange); // the popover's first row is to show its focus
    m_config.editTile(id, [](TileItem &tile) { tile.tileMenuVisible = !tile.tileMenuVisible; });
}

void Commands::showMenus(QPoint globalPosition)
{
    auto *menus = new QMenu(&m_window);
    menus->setAttribute(Qt::WA_DeleteOnClose);
    menus->addAction(m_settings);
    menus->addAction(startAtLoginAction(menus));
    QMenu *windowMenu = menus->addMenu(localized("Window"));
    if (m_calendar)
        windowMenu->addAction(m_calendar);
    windowMenu->addActions(m_tileCommands);
    windowMenu->setEnabled(!windowMenu->isEmpty());
    QMenu *helpMenu = menus->addMenu(localized("Help"));
    helpMenu->addAction(m_help);
    menus->addSeparator();
    menus->addAction(m_quit);
    menus->popup(globalPosition);
}
