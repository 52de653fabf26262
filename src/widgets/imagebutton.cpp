// SPDX-License-Identifier: MIT
#include "widgets/imagebutton.h"

#include "widgets/focusring.h"
#include "widgets/windowdrag.h"

#include <QBitmap>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace widgets {

namespace {

constexpr qreal pressedOpacity = 0.5;

/// The device pixels that the widget covers in its window: at a scale of 1.25 two widgets of one size may
/// differ by a pixel, since both of their edges are rounded.
QSize coveredPixels(const QWidget &widget, qreal scale)
{
    const QPoint corner = widget.mapTo(widget.window(), QPoint(0, 0));
    return {qRound((corner.x() + widget.width()) * scale) - qRound(corner.x() * scale),
            qRound((corner.y() + widget.height()) * scale) - qRound(corner.y() * scale)};
}

/// A picture as large as the button in points is as large as the button in pixels, too, whatever the
/// rounding.
int pixelsOf(qreal points, int buttonPoints, int buttonPixels, qreal scale)
{
    return points == buttonPoints ? buttonPixels : qRound(points * scale);
}

} // namespace

QPixmap composeLook(const ImageLook &look, QSize size, QSize pixels, qreal scale)
{
    QImage canvas(pixels, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    for (const QImage *layer : {&look.background, &look.icon, &look.overlay}) {
        if (layer->isNull())
            continue;
        const QSizeF points = layer->deviceIndependentSize();
        const QSize sized(pixelsOf(points.width(), size.width(), pixels.width(), scale),
                          pixelsOf(points.height(), size.height(), pixels.height(), scale));
        QImage picture = layer->size() == sized
            ? *layer
            : layer->scaled(sized, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        picture.setDevicePixelRatio(1);
        painter.drawImage(qRound((pixels.width() - sized.width()) / 2.0),
                          qRound((pixels.height() - sized.height()) / 2.0), picture);
    }
    painter.end();
    QPixmap pixmap = QPixmap::fromImage(std::move(canvas), Qt::NoFormatConversion);
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
}

ImageButton::ImageButton(QWidget *parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
}

void ImageButton::setLook(const ImageLook &look)
{
    if (look == m_look)
        return;
    m_look = look;
    m_composed = QPixmap();
    m_opaqueRegion.reset();
    update();
}

QRegion ImageButton::opaqueRegion() const
{
    if (!m_opaqueRegion) {
        const QImage picture = composeLook(m_look, size(), size(), 1).toImage();
        m_opaqueRegion = QRegion(QBitmap::fromImage(picture.createAlphaMask(Qt::ThresholdDither)));
    }
    return *m_opaqueRegion;
}

void ImageButton::resizeEvent(QResizeEvent *)
{
    m_opaqueRegion.reset();
}

void ImageButton::paintEvent(QPaintEvent *)
{
    const qreal scale = devicePixelRatioF();
    const QSize pixels = coveredPixels(*this, scale);
    if (m_composed.isNull() || m_composed.devicePixelRatio() != scale || m_composed.size() != pixels)
        m_composed = composeLook(m_look, size(), pixels, scale);

    QPainter painter(this);
    if (isDown()) {
        // The background stays solid; only what the button stands for gives way under the finger.
        painter.drawPixmap(0, 0, composeLook({m_look.background, {}, {}}, size(), pixels, scale));
        painter.setOpacity(pressedOpacity);
        painter.drawPixmap(0, 0, composeLook({{}, m_look.icon, m_look.overlay}, size(), pixels, scale));
        painter.setOpacity(1);
    } else {
        painter.drawPixmap(0, 0, m_composed);
    }
    if (showsFocus(*this) && window()->isActiveWindow())
        drawFocusRing(painter, rect(), palette().color(QPalette::Highlight));
}

void ImageButton::mousePressEvent(QMouseEvent *event)
{
    m_pressPosition = event->globalPosition().toPoint();
    QAbstractButton::mousePressEvent(event);
}

void ImageButton::mouseMoveEvent(QMouseEvent *event)
{
    if (startsWindowDrag(*this, *event, m_pressPosition)) {
        setDown(false); // no release will come
        return;
    }
    QAbstractButton::mouseMoveEvent(event);
}

void ImageButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        click();
        return;
    case Qt::Key_Left:
    case Qt::Key_Up:
        Q_EMIT focusStepRequested(-1);
        return;
    case Qt::Key_Right:
    case Qt::Key_Down:
        Q_EMIT focusStepRequested(1);
        return;
    case Qt::Key_F10: // the toolkit knows the menu key only
        if (event->modifiers() == Qt::ShiftModifier) {
            QContextMenuEvent menu(QContextMenuEvent::Keyboard, rect().center(),
                                   mapToGlobal(rect().center()));
            QCoreApplication::sendEvent(this, &menu);
            return;
        }
        QAbstractButton::keyPressEvent(event);
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

} // namespace widgets
