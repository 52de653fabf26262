// SPDX-License-Identifier: MIT
#pragma once

#include "settings/settingspage.h"

class Config;
class PictureButton;
class QCheckBox;
namespace widgets {
class PopupPicker;
class SegmentedPicker;
} // namespace widgets

/// The first tab: calendar, position, theme and application icon. Keeps no state: controls show Config, and
/// what the user does goes straight into it. While it exists, every change of the first three fields is
/// saved, whoever made it.
class GeneralSettingsView : public SettingsPage
{
    Q_OBJECT

public:
    GeneralSettingsView(Config &config, QWidget *parent);

private:
    QWidget *makeThemeRow(const QString &label);
    QWidget *makeAppIconMenu();
    QWidget *makeCredit();
    void refresh();
    void save();
    void reload();
    void chooseAppIcon(const QString &name);

    Config &m_config;
    QCheckBox *m_showsDate;
    widgets::SegmentedPicker *m_direction;
    widgets::PopupPicker *m_theme;
    PictureButton *m_appIcon;
};
