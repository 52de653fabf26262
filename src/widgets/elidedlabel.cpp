// SPDX-License-Identifier: MIT
#include "widgets/elidedlabel.h"

#include "widgets/plaintext.h"

#include <QPainter>

#include <algorithm>

namespace widgets {

namespace {

constexpr int narrowest = 60; // points
constexpr int preferredWidth = 320; // no text alone makes its window wider

} // namespace

ElidedLabel::ElidedLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const
{
    return {std::min(fontMetrics().horizontalAdvance(text()) + 1, preferredWidth), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {std::min(sizeHint().width(), narrowest), fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawText(rect(), Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

void ElidedLabel::resizeEvent(QResizeEvent *)
{
    setToolTip(fontMetrics().horizontalAdvance(text()) > width() ? plainToolTip(text()) : QString());
}

} // namespace widgets
