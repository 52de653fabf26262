// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/imagebutton.h"
#include "widgets/popover.h"

#include <QPointer>
#include <QTimer>

#include <functional>

class Config;
struct StripServices;

/// The first tile of the strip: the home glyph or today's day of the month, and the home menu.
class HomeTileView : public widgets::ImageButton
{
    Q_OBJECT

public:
    /// Day of the month, 1 to 31; replaced in tests.
    using Today = std::function<int()>;

    HomeTileView(Config &config, StripServices &services, QWidget *parent, Today today = {});

    void refresh();
    int currentDay() const { return m_currentDay; }
    void closeMenu();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    enum class Extras { None, Folders };

    void handleClick();
    void openMenu(Extras extras);
    QWidget *makeMenu(Extras extras);
    void openSupport();
    void updateDay();

    Config &m_config;
    StripServices &m_services;
    Today m_today;
    int m_currentDay;
    QTimer m_dayTimer;
    QPointer<widgets::Popover> m_menu; ///< there exactly while the home menu is visible
};
