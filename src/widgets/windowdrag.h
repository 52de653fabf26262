// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>
#include <QPoint>

#include <optional>

class QMouseEvent;
class QWidget;

namespace widgets {

/// What the window gets when a drag of it begins. Some window managers tell of the moves only after the
/// release.
inline const auto windowDragEvent = QEvent::Type(QEvent::registerEventType());

/// Hands the window of `widget` to the window manager to be dragged, once the left button is held and the
/// pointer is further from `pressPosition` (global) than the drag distance. True from then on: no release
/// event follows. Forgets the position, so that each press starts one drag only: a second one would begin as
/// the first one ends, and the window go on following the pointer.
bool startsWindowDrag(const QWidget &widget, const QMouseEvent &move, std::optional<QPoint> &pressPosition);

} // namespace widgets
