// SPDX-License-Identifier: MIT
#include "widgets/popuppicker.h"

#include <QAbstractItemView>
#include <QStyleOption>
#include <QWheelEvent>

namespace widgets {

namespace {

constexpr int narrowest = 60; // points

} // namespace

PopupPicker::PopupPicker(QWidget *parent)
    : QComboBox(parent)
{
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    view()->setTextElideMode(Qt::ElideRight);
}

void PopupPicker::setOptions(const QStringList &texts)
{
    while (count() > texts.size())
        removeItem(count() - 1);
    for (int i = 0; i < texts.size(); ++i) {
        if (i == count())
            addItem(texts.at(i));
        else if (itemText(i) != texts.at(i))
            setItemText(i, texts.at(i));
    }
}

QSize PopupPicker::minimumSizeHint() const
{
    return {narrowest, QComboBox::minimumSizeHint().height()};
}

void PopupPicker::initStyleOption(QStyleOptionComboBox *option) const
{
    QComboBox::initStyleOption(option);
    const QRect room =
        style()->subControlRect(QStyle::CC_ComboBox, option, QStyle::SC_ComboBoxEditField, this);
    option->currentText = fontMetrics().elidedText(option->currentText, Qt::ElideRight, room.width());
}

void PopupPicker::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

} // namespace widgets
