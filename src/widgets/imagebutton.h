// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QImage>
#include <QPixmap>

#include <optional>

namespace widgets {

/// What a button made of pictures shows. Each picture is drawn at its natural size (its device-independent
/// size), centred and clipped, never stretched.
struct ImageLook
{
    QImage background;
    QImage icon;
    QImage overlay; ///< above the icon; may be null

    bool operator==(const ImageLook &) const = default;
};

/// The look of a button of `size` points that covers `pixels` device pixels at `scale` pixels a point, every
/// picture on whole pixels.
QPixmap composeLook(const ImageLook &look, QSize size, QSize pixels, qreal scale);

/// A button that is nothing but its pictures, and by which its window can be dragged: a press that moves
/// further than the drag distance moves the window and fires nothing.
class ImageButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ImageButton(QWidget *parent = nullptr);

    const ImageLook &look() const { return m_look; }
    void setLook(const ImageLook &look);
    /// Where the pictures are more solid than not, in points: the button's shape where nothing blends.
    QRegion opaqueRegion() const;

Q_SIGNALS:
    /// An arrow key: -1 towards the start, 1 towards the end of a row of buttons.
    void focusStepRequested(int step);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    ImageLook m_look;
    mutable std::optional<QRegion> m_opaqueRegion; ///< of m_look at the present size
    QPixmap m_composed; ///< m_look at the present size and scale; null when it must be made anew
    std::optional<QPoint> m_pressPosition;
};

} // namespace widgets
