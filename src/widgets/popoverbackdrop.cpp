// SPDX-License-Identifier: MIT
#include "widgets/popoverbackdrop.h"

#include <QApplication>
#include <QEvent>
#include <QWindow>

namespace widgets {

PopoverBackdrop::PopoverBackdrop(QWidget &popover, const QRect &screens)
    : QWidget(&popover, Qt::ToolTip | Qt::FramelessWindowHint)
    , m_popover(popover)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setGeometry(screens);
    show();
    qApp->installEventFilter(this);
}

void PopoverBackdrop::takeKeyboard()
{
    m_popover.windowHandle()->setKeyboardGrabEnabled(true);
}

bool PopoverBackdrop::eventFilter(QObject *watched, QEvent *event)
{
    const auto *widget = event->type() == QEvent::Show ? qobject_cast<QWidget *>(watched) : nullptr;
    if (widget && widget != &m_popover && isVisible()
        && (widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog))
        Q_EMIT left();
    return false;
}

void PopoverBackdrop::mousePressEvent(QMouseEvent *)
{
    Q_EMIT left();
}

} // namespace widgets
