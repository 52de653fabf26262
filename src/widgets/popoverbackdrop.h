// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace widgets {

/// What a popover needs where our windows go past the window manager: an unseen window below it that covers
/// the screens, since presses in other programs' windows stay unknown there, and the keyboard, which nobody
/// gives it.
class PopoverBackdrop : public QWidget
{
    Q_OBJECT

public:
    /// Covers the screens from now until it is hidden.
    PopoverBackdrop(QWidget &popover, const QRect &screens);

    void takeKeyboard();

Q_SIGNALS:
    /// The user presses beside the popover, or a window of ours opens that the manager keeps below.
    void left();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    QWidget &m_popover;
};

} // namespace widgets
