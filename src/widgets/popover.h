// SPDX-License-Identifier: MIT
#pragma once

#include "platform/presswatcher.h"

#include <QImage>
#include <QPainterPath>
#include <QWidget>

#include <optional>

namespace widgets {

class PopoverBackdrop;

/// A small window that hangs on an anchor with an arrow. A child of the anchor, so it goes with it. It grabs
/// nothing: typing and input methods work in it, and presses elsewhere reach whom they are meant for.
class Popover : public QWidget
{
    Q_OBJECT

public:
    /// The side of the anchor that it opens on while there is room; else the opposite one.
    enum class Side { Above, Right, Below };
    enum class Activation { TakeFocus, LeaveFocus };

    Popover(QWidget &anchor, Side side);
    ~Popover() override;

    /// Takes ownership. The popover is as large as the content wants, at most 60 % of the screen high.
    void setContent(QWidget *content);
    /// Taking the focus gives it to the content's focus proxy, where there is one.
    void open(Activation activation);
    /// What a press elsewhere does: hides the popover and tells its owner.
    void dismiss();

Q_SIGNALS:
    /// The user sent it away: by Escape, a press elsewhere, another program or another popover. The window is
    /// hidden by then.
    void dismissed();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    enum class Edge { Top, Bottom, Left, Right }; ///< where the arrow is

    void place();
    bool isInside(const QWidget *widget) const;
    QMargins frameMargins(Edge arrow) const;
    QPainterPath outline() const;

    QWidget &m_anchor;
    Side m_side;
    Edge m_arrowEdge = Edge::Bottom;
    int m_arrowPosition = 0; ///< of the tip along its edge, in the window's points
    QWidget *m_content = nullptr;
    std::optional<platform::PressWatcher> m_pressWatcher; ///< while it is open
    PopoverBackdrop *m_backdrop = nullptr; ///< instead, where our windows go past the manager
    QImage m_picture; ///< the painted frame at the present size and scale
};

} // namespace widgets
