// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QWidget>

namespace widgets {

/// True for the control that keys go to, once the user has moved about its window by keys: to one who clicks,
/// the ring says nothing.
inline bool showsFocus(const QWidget &control)
{
    return control.hasFocus() && control.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

/// Marks the control inside `area` as the one that has the focus.
inline void drawFocusRing(QPainter &painter, const QRectF &area, const QColor &color)
{
    constexpr int width = 2; // points
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawRoundedRect(area.adjusted(width / 2.0, width / 2.0, -width / 2.0, -width / 2.0), 4, 4);
    painter.restore();
}

} // namespace widgets
