// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>

class QMouseEvent;
class QWidget;

namespace widgets {

/// Hands the window of `widget` to the window manager to be dragged, once the left button is held and the
/// pointer is further from `pressPosition` (global) than the drag distance. True when it did: no release
/// event follows.
bool startsWindowDrag(const QWidget &widget, const QMouseEvent &move, QPoint pressPosition);

} // namespace widgets
