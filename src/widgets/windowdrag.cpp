// SPDX-License-Identifier: MIT
#include "widgets/windowdrag.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace widgets {

namespace {

/// Moves a window with the pointer until the button is let go, which nobody else gets to know.
class OwnDrag : public QObject
{
public:
    OwnDrag(QWidget &window, QPoint pressPosition)
        : QObject(&window)
        , m_window(window)
        , m_grip(pressPosition - window.pos())
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const bool isRelease = event->type() == QEvent::MouseButtonRelease;
        if (!watched->isWidgetType() || (event->type() != QEvent::MouseMove && !isRelease))
            return false;
        m_window.move(static_cast<QMouseEvent *>(event)->globalPosition().toPoint() - m_grip);
        if (isRelease)
            deleteLater();
        return true;
    }

private:
    QWidget &m_window;
    QPoint m_grip; ///< where the pointer holds the window
};

} // namespace

bool startsWindowDrag(const QWidget &widget, const QMouseEvent &move, std::optional<QPoint> &pressPosition)
{
    if (!(move.buttons() & Qt::LeftButton))
        return false;
    if (!pressPosition)
        return true;
    // Not on the press itself: a move that the window manager takes over swallows the click.
    const QPoint way = move.globalPosition().toPoint() - *pressPosition;
    if (way.manhattanLength() <= QApplication::startDragDistance())
        return false;
    QWidget &window = *widget.window();
    if (window.windowFlags() & Qt::BypassWindowManagerHint)
        new OwnDrag(window, *pressPosition);
    else if (!window.windowHandle() || !window.windowHandle()->startSystemMove())
        return false;
    pressPosition.reset();
    QEvent event(windowDragEvent);
    QCoreApplication::sendEvent(&window, &event);
    return true;
}

} // namespace widgets
