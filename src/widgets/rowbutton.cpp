// SPDX-License-Identifier: MIT
#include "widgets/rowbutton.h"

#include "widgets/focusring.h"
#include "widgets/metrics.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace widgets {

namespace {

constexpr int minimumRowWidth = 100; // points
constexpr int rowHeight = 22;
constexpr qreal hoveredOpacity = 0.5;

} // namespace

RowButton::RowButton(const QString &text, QWidget *parent)
    : QAbstractButton(parent)
{
    setText(text);
    setFocusPolicy(Qt::StrongFocus);
    QFont font = this->font();
    font.setPixelSize(bodyFontSize);
    setFont(font);
}

void RowButton::setPicture(const QImage &picture)
{
    m_picture = picture;
    updateGeometry();
}

QSize RowButton::sizeHint() const
{
    const int picture =
        m_picture.isNull() ? 0 : m_picture.deviceIndependentSize().toSize().width() + stackSpacing;
    return {std::max(minimumRowWidth, picture + fontMetrics().horizontalAdvance(text()) + 2 * stackSpacing),
            std::max(rowHeight, fontMetrics().height())};
}

void RowButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (underMouse() || isDown())
        painter.setOpacity(hoveredOpacity);
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    QRect row = rect().adjusted(rowInset, 0, -rowInset, 0);
    if (!m_picture.isNull()) {
        const QSize size = m_picture.deviceIndependentSize().toSize();
        painter.drawImage(
            QPoint(mirrored ? row.right() + 1 - size.width() : row.left(), (height() - size.height()) / 2),
            m_picture);
        const int taken = size.width() + stackSpacing;
        row.adjust(mirrored ? 0 : taken, 0, mirrored ? -taken : 0, 0);
    }
    painter.setPen(palette().color(QPalette::WindowText));
    // To the painter of a mirrored widget, left is where lines begin.
    painter.drawText(row, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text());
    if (showsFocus(*this)) {
        painter.setOpacity(1);
        drawFocusRing(painter, rect(), palette().color(QPalette::Highlight));
    }
}

void RowButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        click();
        break;
    case Qt::Key_Up:
        focusNextPrevChild(false);
        break;
    case Qt::Key_Down:
        focusNextPrevChild(true);
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void RowButton::enterEvent(QEnterEvent *)
{
    update();
}

void RowButton::leaveEvent(QEvent *)
{
    update();
}

} // namespace widgets
