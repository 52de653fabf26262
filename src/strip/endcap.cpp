// SPDX-License-Identifier: MIT
#include "strip/endcap.h"

#include "strip/stripmetrics.h"

#include <QContextMenuEvent>

#include <algorithm>

EndCap::EndCap(const QString &name, QWidget *parent)
    : ImageButton(parent)
{
    setToolTip(name);
    setAccessibleName(name);
}

int EndCap::length(bool vertical) const
{
    if (!vertical)
        return strip::capLength;
    return std::max(strip::capLength, look().icon.deviceIndependentSize().toSize().height());
}

void EndCap::contextMenuEvent(QContextMenuEvent *event)
{
    Q_EMIT contextMenuRequested(event->globalPos());
}
