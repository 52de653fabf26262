// SPDX-License-Identifier: MIT
#include "strip/appdelegate.h"

#include "platform/floatingwindow.h"
#include "strip/contentview.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <chrono>

namespace {

constexpr std::chrono::milliseconds settlingTime(200); // of a change of screens

} // namespace

AppDelegate::AppDelegate(ContentView &strip, QObject *parent)
    : QObject(parent)
    , m_strip(strip)
{
    strip.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    strip.setAttribute(Qt::WA_TranslucentBackground);
    strip.setAttribute(Qt::WA_QuitOnClose);
    strip.setWindowTitle(QStringLiteral("pondWicket"));
    strip.installEventFilter(this);
    connect(&strip, &ContentView::idealSizeChanged, this, &AppDelegate::fitWindow);
    m_returnTimer.setSingleShot(true);
    m_returnTimer.setInterval(settlingTime);
    connect(&m_returnTimer, &QTimer::timeout, this, &AppDelegate::fitWindow);
    watchScreens();
}

void AppDelegate::applicationDidFinishLaunching()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->geometry();
        const QSize size = m_strip.sizeHint().boundedTo(area.size());
        m_strip.setGeometry(QRect(QPoint(area.left(), area.bottom() + 1 - size.height()), size));
    }
    m_strip.show();
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        // The window manager takes both away whenever a window is hidden.
        platform::floatOnAllDesktops(m_strip.winId());
        QMetaObject::invokeMethod(
            this, [this] { platform::requestAllDesktops(m_strip.winId()); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void AppDelegate::watchScreens()
{
    const auto watch = [this](QScreen *screen) {
        connect(screen, &QScreen::geometryChanged, this, &AppDelegate::scheduleReturn);
        scheduleReturn();
    };
    for (QScreen *screen : QGuiApplication::screens())
        connect(screen, &QScreen::geometryChanged, this, &AppDelegate::scheduleReturn);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &AppDelegate::scheduleReturn);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &AppDelegate::scheduleReturn);
}

void AppDelegate::scheduleReturn()
{
    m_returnTimer.start();
}

/// Gives the window the strip's size, its bottom-left corner where it was, as far as that is on a screen.
void AppDelegate::fitWindow()
{
    if (!m_strip.isVisible() || QGuiApplication::screens().isEmpty())
        return;
    const QPoint corner = m_strip.geometry().bottomLeft();
    const QScreen *screen = QGuiApplication::screenAt(corner);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->geometry();
    const QSize size = m_strip.sizeHint().boundedTo(area.size());
    const int left = std::clamp(corner.x(), area.left(), area.right() + 1 - size.width());
    const int bottom = std::clamp(corner.y(), area.top() + size.height() - 1, area.bottom());
    m_strip.setGeometry(QRect(QPoint(left, bottom + 1 - size.height()), size));
}
