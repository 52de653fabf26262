// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

class Config;
class QAction;
class QMenu;
class QWidget;
struct StripServices;

/// The program's commands: actions with shortcuts that work in each of its windows, and the menus that show
/// them. The strip has no menu bar; the menus come up where the context menu is asked for.
class Commands : public QObject
{
    Q_OBJECT

public:
    /// `window`: the strip; owns the actions.
    Commands(Config &config, StripServices &services, QWidget &window);

    void showMenus(QPoint globalPosition);

Q_SIGNALS:
    void quitRequested();

private:
    QAction *addCommand(const QString &text, const QString &shortcut);
    void syncTileCommands();
    void toggleTileMenu(const QUuid &id);

    Config &m_config;
    QWidget &m_window;
    QAction *m_settings;
    QAction *m_quit;
    QAction *m_help;
    QAction *m_calendar = nullptr; ///< there only while the date is shown
    QList<QAction *> m_tileCommands; ///< of the first ten tiles, in strip order
};
