// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace platform {

/// Lets drags over the windows of what it is installed on be answered as copies, whatever their sources
/// propose. The protocol always allows that; the toolkit does not when a source names the move alone, as
/// file managers do while Shift is held, and turns the answer into the move that deletes the source's file.
class CopyingDrags : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *object, QEvent *event) override;
};

} // namespace platform
