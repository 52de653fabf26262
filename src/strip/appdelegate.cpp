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

/// The screen that shows most of an area; null when none shows any of it.
const QScreen *screenOf(const QRect &area)
{
    const QScreen *best = nullptr;
    int most = 0;
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QSize shown = screen->geometry().intersected(area).size();
        if (shown.width() * shown.height() > most) {
            most = shown.width() * shown.height();
            best = screen;
        }
    }
    return best;
}

bool isOnScreensOfScale(const QRect &area, qreal scale)
{
    QRegion rest(area);
    for (const QScreen *screen : QGuiApplication::screens()) {
        if (screen->devicePixelRatio() == scale)
            rest -= screen->geometry();
    }
    return rest.isEmpty();
}

/// Where a part of a screen's side may begin at the latest to end on the screen. Both measures and the place
/// are rounded to pixels, each for itself; the screen's own, of which the toolkit tells whole points only, is
/// even.
int lastStart(int side, int length, qreal scale)
{
    const int pixels = 2 * qRound(side * scale / 2);
    int start = side - length;
    while (start > 0 && qRound(start * scale) + qRound(length * scale) > pixels)
        --start;
    return std::max(0, start);
}

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
    m_dragTimer.setSingleShot(true);
    m_dragTimer.setInterval(settlingTime);
    connect(&m_dragTimer, &QTimer::timeout, this, &AppDelegate::endDrag);
    watchScreens();
}

void AppDelegate::applicationDidFinishLaunching()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        placeAt(screen->geometry().bottomLeft(), *screen);
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
        followDrag();
    } else if (event->type() == QEvent::Move && m_strip.isVisible()
               && m_strip.geometry().bottomLeft() != m_corner) {
        if (platform::isPointerPressed())
            followDrag();
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
    if (m_isDragged) // before the window manager moves the strip
        endDrag();
    m_returnsLeft = maxReturns;
    m_returnTimer.start();
}

/// Some window managers tell of the moves only after the release.
void AppDelegate::followDrag()
{
    m_isHome = false;
    m_isDragged = true;
    m_returnsLeft = 0;
    m_dragTimer.start();
}

void AppDelegate::endDrag()
{
    if (platform::isPointerPressed()) {
        m_dragTimer.start();
        return;
    }
    m_dragTimer.stop();
    m_isDragged = false;
    const QRect window = m_strip.geometry();
    if (const QScreen *screen = screenOf(partAt(window))) {
        m_ownScreen = screen->name();
        m_ownPlace = window.bottomLeft() - screen->geometry().topLeft();
    }
}

/// Gives the window the strip's size. One that was moved keeps its bottom-left corner on the screen where the
/// user left it, and returns there when that screen does.
void AppDelegate::fitWindow()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!m_strip.isVisible() || !screen)
        return;
    if (m_isHome) {
        placeAt(screen->geometry().bottomLeft(), *screen);
        return;
    }
    if (m_isDragged) {
        m_returnTimer.start();
        return;
    }
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto own = std::find_if(screens.begin(), screens.end(), [this](const QScreen *candidate) {
        return candidate->name() == m_ownScreen;
    });
    if (own != screens.end()) {
        placeAt((*own)->geometry().topLeft() + m_ownPlace, **own);
        return;
    }
    if (const QScreen *most = screenOf(partAt(m_strip.geometry())))
        screen = most;
    placeAt(m_strip.geometry().bottomLeft(), *screen);
}

/// What may not leave the screens: the window's empty part may.
QRect AppDelegate::partAt(const QRect &window) const
{
    return {window.topLeft(), m_strip.elementsSize().boundedTo(window.size())};
}

void AppDelegate::placeAt(QPoint bottomLeft, const QScreen &screen)
{
    const QRect area = screen.geometry();
    const qreal scale = screen.devicePixelRatio();
    const QSize size = m_strip.sizeHint().boundedTo(area.size());
    QRect window(bottomLeft - QPoint(0, size.height() - 1), size);
    const QRect part = partAt(window);
    if (area.contains(part) || !isOnScreensOfScale(part, scale)) {
        const QPoint end = area.topLeft()
            + QPoint(lastStart(area.width(), part.width(), scale),
                     lastStart(area.height(), part.height(), scale));
        window.moveTopLeft(
            {std::clamp(window.left(), area.left(), end.x()), std::clamp(window.top(), area.top(), end.y())});
    }
    m_corner = window.bottomLeft();
    m_strip.setGeometry(window);
}
