// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace widgets {

/// One line of text that gives way: too long a text is elided and stands whole in the tooltip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    ElidedLabel(const QString &text, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
};

} // namespace widgets
