// SPDX-License-Identifier: MIT
#include "settings/plainfield.h"

#include "widgets/focusring.h"

#include <QStyle>

PlainField::PlainField(QWidget *parent)
    : QLineEdit(parent)
{
    setFrame(false);
    setAcceptDrops(false);
    // On the window's side, whatever the direction of the text.
    setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading));
}

void PlainField::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    if (hasFocus())
        widgets::drawFocusRing(painter, rect(), palette().color(QPalette::Highlight));
}
