// SPDX-License-Identifier: MIT
#include "settings/symbolbutton.h"

#include "settings/settingsmetrics.h"
#include "themes/symbolimage.h"

#include <QEvent>
#include <QIcon>

QIcon symbolIcon(const QString &symbol, const QWidget &widget)
{
    const QColor color = widget.palette().color(QPalette::WindowText);
    return QIcon(QPixmap::fromImage(themes::symbolImage(symbol, color, settings::symbolSize)));
}

SymbolButton::SymbolButton(const QString &symbol, const QString &name, QWidget *parent)
    : QToolButton(parent)
    , m_symbol(symbol)
{
    setAutoRaise(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(name);
    setToolTip(name);
    setIconSize({settings::symbolSize, settings::symbolSize});
    setIcon(symbolIcon(m_symbol, *this));
}

void SymbolButton::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        setIcon(symbolIcon(m_symbol, *this));
    QToolButton::changeEvent(event);
}
