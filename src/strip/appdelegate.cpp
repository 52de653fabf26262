// SPDX-License-Identifier: MIT
#include "strip/appdelegate.h"

#include "platform/floatingwindow.h"
#include "strip/contentview.h"
#include "widgets/windowdrag.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <chrono>

namespace {

constexpr std::chrono::milliseconds settlingTime(200); // of a change of screens
constexpr std::chrono::seconds managerStart(1); // of a window manager that takes over
constexpr int maxReturns = 3; // after a change of screens, when the window manager moves the strip as well

} // namespace

AppDelegate::AppDelegate(ContentView &strip, QObject *parent)
    : QObject(parent)
    , m_strip(strip)
{
    strip.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    if (platform::mustBypassManager()) // a tool, since any other window takes the keyboard as it comes up
        strip.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
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
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        placeAt(screen->geometry().bottomLeft(), screen->geometry());
    m_strip.show();
    QTimer::singleShot(0, this, [this] {
        updateShape();
        // On a screen of another scale the window has as many pixels as before, and not its size.
        connect(m_strip.windowHandle(), &QWindow::screenChanged, &m_returnTimer, qOverload<>(&QTimer::start));
        connect(&m_strip, &ContentView::shapeChanged, this, &AppDelegate::updateShape);
        m_managerWatcher.emplace([this] {
            if (platform::mustBypassManager())
                m_strip.raise();
            else // asked for before it has looked at all windows, some ignore it
                QTimer::singleShot(managerStart, this,
                                   [this] { platform::requestAllDesktops(m_strip.winId()); });
        });
    });
}

/// The window's empty part takes no presses and casts no shadow.
void AppDelegate::updateShape()
{
    if (platform::mustBypassManager())
        platform::setInputRegion(m_strip.winId(), m_strip.mask(), m_strip.devicePixelRatioF());
    const QRect shown = m_strip.mask().boundingRect();
    const qreal scale = m_strip.devicePixelRatioF();
    const auto pixels = [scale](int points) { return qRound(points * scale); };
    m_shadow.apply(m_strip.winId(),
                   QMargins(pixels(shown.left()), pixels(shown.top()),
                            pixels(m_strip.width() - shown.right() - 1),
                            pixels(m_strip.height() - shown.bottom() - 1)));
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        // The window manager takes both away whenever a window is hidden.
        platform::floatOnAllDesktops(m_strip.winId());
        QMetaObject::invokeMethod(
            this, [this] { platform::requestAllDesktops(m_strip.winId()); }, Qt::QueuedConnection);
    } else if (event->type() == widgets::windowDragEvent) {
        m_isHome = false;
        m_returnsLeft = 0;
    } else if (event->type() == QEvent::Move && m_strip.isVisible()
               && m_strip.geometry().bottomLeft() != m_corner) {
        if (platform::isPointerPressed())
            m_isHome = false;
        else if (m_returnsLeft > 0 && m_returnsLeft--)
            m_returnTimer.start(); // the window manager has its own idea of the new screen
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
    m_returnsLeft = maxReturns;
    m_returnTimer.start();
}

/// Gives the window the strip's size. One that was moved keeps its bottom-left corner as far as that is on a
/// screen.
void AppDelegate::fitWindow()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!m_strip.isVisible() || !screen)
        return;
    if (m_isHome) {
        placeAt(screen->geometry().bottomLeft(), screen->geometry());
        return;
    }
    if (platform::isPointerPressed()) { // it is being dragged
        m_returnTimer.start();
        return;
    }
    const QPoint corner = m_strip.geometry().bottomLeft();
    if (const QScreen *own = QGuiApplication::screenAt(corner))
        screen = own;
    placeAt(corner, screen->geometry());
}

void AppDelegate::placeAt(QPoint bottomLeft, const QRect &area)
{
    const QSize size = m_strip.sizeHint().boundedTo(area.size());
    const int left = std::clamp(bottomLeft.x(), area.left(), area.right() + 1 - size.width());
    const int bottom = std::clamp(bottomLeft.y(), area.top() + size.height() - 1, area.bottom());
    m_corner = QPoint(left, bottom);
    m_strip.setGeometry(QRect(QPoint(left, bottom + 1 - size.height()), size));
}
