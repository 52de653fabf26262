// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QImage>

namespace widgets {

/// A borderless button that is one row of a menu: a picture, where there is one, and a text.
class RowButton : public QAbstractButton
{
    Q_OBJECT

public:
    RowButton(const QString &text, QWidget *parent);

    /// Drawn at its natural size.
    void setPicture(const QImage &picture);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QImage m_picture;
};

} // namespace widgets
