// SPDX-License-Identifier: MIT
#include "widgets/windowdrag.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace widgets {

bool startsWindowDrag(const QWidget &widget, const QMouseEvent &move, QPoint pressPosition)
{
    if (!(move.buttons() & Qt::LeftButton))
        return false;
    // Not on the press itself: a move that the window manager takes over swallows the click.
    const QPoint way = move.globalPosition().toPoint() - pressPosition;
    if (way.manhattanLength() <= QApplication::startDragDistance())
        return false;
    QWindow *window = widget.window()->windowHandle();
    return window && window->startSystemMove();
}

} // namespace widgets
