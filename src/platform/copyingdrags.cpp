// SPDX-License-Identifier: MIT
#include "platform/copyingdrags.h"

#include <QDropEvent>

namespace platform {

namespace {

/// The way to what else only the toolkit sets.
struct Access : QDropEvent
{
    static constexpr Qt::DropActions QDropEvent::*possibleActions = &Access::m_actions;
};

} // namespace

bool CopyingDrags::eventFilter(QObject *, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop)
        static_cast<QDropEvent *>(event)->*Access::possibleActions |= Qt::CopyAction;
    return false;
}

} // namespace platform
