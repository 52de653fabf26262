// SPDX-License-Identifier: MIT
#pragma once

#include <QToolButton>

/// The system symbol in the text colour of the widget's palette, at the size of controls.
QIcon symbolIcon(const QString &symbol, const QWidget &widget);

/// A borderless button that shows a system symbol; its name is a tooltip.
class SymbolButton : public QToolButton
{
    Q_OBJECT

public:
    SymbolButton(const QString &symbol, const QString &name, QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;

private:
    QString m_symbol;
};
