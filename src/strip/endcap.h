// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/imagebutton.h"

/// One end of the strip: a button on a picture that finishes the strip.
class EndCap : public widgets::ImageButton
{
    Q_OBJECT

public:
    EndCap(const QString &name, QWidget *parent);

    /// Points along the strip. The button's own picture decides it in a vertical strip.
    int length(bool vertical) const;

Q_SIGNALS:
    void contextMenuRequested(QPoint globalPosition);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
};
