// SPDX-License-Identifier: MIT
#include "widgets/imagebutton.h"

#include "widgets/windowdrag.h"

#include <QBitmap>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace widgets {

namespace {

constexpr qreal pressedOpacity = 0.5;
constexpr int focusRingWidth = 2; // points

QSize composedSize(QSize size, qreal scale)
{
    return {int(std::ceil(size.width() * scale)), int(std::ceil(size.height() * scale))};
}

void drawCentred(QPainter &painter, QSize area, const QImage &image, qreal scale)
{
    if (image.isNull())
        return;
    const QSize size = (image.deviceIndependentSize() * scale).toSize();
    const QImage sized =
        image.size() == size ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QPoint corner(qRound((area.width() - size.width()) / 2.0),
                        qRound((area.height() - size.height()) / 2.0));
    QImage plain = sized;
    plain.setDevicePixelRatio(1);
    painter.drawImage(corner, plain);
}

} // namespace

QPixmap composeLook(const ImageLook &look, QSize size, qreal scale)
{
    const QSize pixels = composedSize(size, scale);
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (const QImage *layer : {&look.background, &look.icon, &look.overlay})
        drawCentred(painter, pixels, *layer, scale);
    painter.end();
    QPixmap pixmap = QPixmap::fromImage(std::move(image), Qt::NoFormatConversion);
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
        const QImage picture = composeLook(m_look, size(), 1).toImage();
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
    if (m_composed.isNull() || m_composed.devicePixelRatio() != scale
        || m_composed.size() != composedSize(size(), scale))
        m_composed = composeLook(m_look, size(), scale);

    QPainter painter(this);
    if (isDown()) {
        // The background stays solid; only what the button stands for gives way under the finger.
        ImageLook background;
        background.background = m_look.background;
        painter.drawPixmap(0, 0, composeLook(background, size(), scale));
        painter.setOpacity(pressedOpacity);
        ImageLook label = m_look;
        label.background = QImage();
        painter.drawPixmap(0, 0, composeLook(label, size(), scale));
        painter.setOpacity(1);
    } else {
        painter.drawPixmap(0, 0, m_composed);
    }
    if (hasFocus() && window()->isActiveWindow()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), focusRingWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 4, 4);
    }
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
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

} // namespace widgets
