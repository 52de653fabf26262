// SPDX-License-Identifier: MIT
#include "widgets/popuppicker.h"

#include <QListView>
#include <QStringListModel>
#include <QStyleOption>
#include <QWheelEvent>

namespace widgets {

namespace {

constexpr int narrowest = 60; // points
constexpr qsizetype mostMeasured = 200;
constexpr int widthOfMany = 40; // characters

} // namespace

PopupPicker::PopupPicker(QWidget *parent)
    : QComboBox(parent)
    , m_texts(new QStringListModel(this))
{
    setModel(m_texts);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    view()->setTextElideMode(Qt::ElideRight);
    static_cast<QListView &>(*view()).setUniformItemSizes(true);
}

void PopupPicker::setOptions(const QStringList &texts)
{
    // More than a screen shows are not measured one by one, and open as a list that scrolls.
    const bool few = texts.size() <= mostMeasured;
    setSizeAdjustPolicy(few ? AdjustToContents : AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(few ? 0 : widthOfMany);
    const QString look = few ? QString() : QStringLiteral("combobox-popup: 0");
    if (styleSheet() != look)
        setStyleSheet(look);
    if (!few)
        view()->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded); // menus have none

    const QStringList shown = m_texts->stringList();
    if (texts.size() != shown.size()) {
        m_texts->setStringList(texts);
        return;
    }
    for (int i = 0; i < texts.size(); ++i) {
        if (texts.at(i) != shown.at(i))
            m_texts->setData(m_texts->index(i), texts.at(i));
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
