// SPDX-License-Identifier: MIT
#pragma once

#include <QTabWidget>

class Config;
class TileSettingsView;
namespace platform {
class FilePanel;
}

/// The settings window: a tab of general options and, while there are tiles, one that edits them.
class SettingsView : public QTabWidget
{
    Q_OBJECT

public:
    SettingsView(Config &config, platform::FilePanel &filePanel);

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void syncTabs();
    void setTabSymbols();

    Config &m_config;
    platform::FilePanel &m_filePanel;
    TileSettingsView *m_tileSettings = nullptr;
};
