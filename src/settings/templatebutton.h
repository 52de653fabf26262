// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>

namespace links {
struct LinkTemplate;
}

/// The cell of one template in the grid.
class TemplateButton : public QAbstractButton
{
    Q_OBJECT

public:
    TemplateButton(const links::LinkTemplate &source, QWidget *parent);

    static constexpr int side = 64; // points

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_label;
    QString m_symbol;
    QColor m_color;
};
