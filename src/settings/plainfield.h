// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

/// A line of text without a frame that shows that it has the focus. Drops pass it by: they are links for the
/// tile.
class PlainField : public QLineEdit
{
    Q_OBJECT

public:
    explicit PlainField(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};
