// SPDX-License-Identifier: MIT
#include "settings/plainfield.h"

#include "widgets/focusring.h"

PlainField::PlainField(QWidget *parent)
    : QLineEdit(parent)
{
    setFrame(false);
    setAcceptDrops(false);
}

void PlainField::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    if (hasFocus())
        widgets::drawFocusRing(painter, rect(), palette().color(QPalette::Highlight));
}
