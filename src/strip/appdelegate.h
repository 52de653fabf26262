// SPDX-License-Identifier: MIT
#pragma once

#include "platform/managerwatcher.h"
#include "platform/windowshadow.h"

#include <QObject>
#include <QPoint>
#include <QString>
#include <QTimer>

#include <optional>

class ContentView;
class QScreen;

/// Makes the strip's window float: above others, on all desktops, without a frame, at the bottom-left corner
/// of the primary screen; and keeps it on a screen when screens come, go or change.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    AppDelegate(ContentView &strip, QObject *parent);

    /// Shows the strip for the first time.
    void applicationDidFinishLaunching();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fitWindow();
    void updateShape();
    void placeAt(QPoint bottomLeft, const QScreen &screen);
    void followDrag();
    void endDrag();
    void scheduleReturn();
    void watchScreens();
    QRect partAt(const QRect &window) const;

    ContentView &m_strip;
    platform::WindowShadow m_shadow;
    std::optional<platform::ManagerWatcher> m_managerWatcher;
    QPoint m_corner; ///< bottom-left of the window where it was last put by us
    int m_returnsLeft = 0;
    bool m_isHome = true; ///< in the corner of the primary screen, as long as nobody moves it
    bool m_isDragged = false;
    QString m_ownScreen; ///< name of the one that the user put it on, which may be gone for a while
    QPoint m_ownPlace; ///< of the bottom-left corner there
    QTimer m_returnTimer; ///< screens change in bursts
    QTimer m_dragTimer; ///< runs only during a drag, whose end nobody tells
};
