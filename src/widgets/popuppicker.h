// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

class QStringListModel;

namespace widgets {

/// A combo box that gives way when its place is narrow, keeps to what it is told to show, and is not changed
/// by a wheel that was meant for scrolling.
class PopupPicker : public QComboBox
{
    Q_OBJECT

public:
    explicit PopupPicker(QWidget *parent);

    /// Afterwards the chosen row is whatever the caller sets next.
    void setOptions(const QStringList &texts);

    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionComboBox *option) const override;
    void wheelEvent(QWheelEvent *event) override;

private:
    QStringListModel *m_texts;
};

} // namespace widgets
