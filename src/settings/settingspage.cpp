// SPDX-License-Identifier: MIT
#include "settings/settingspage.h"

#include "widgets/metrics.h"

SettingsPage::SettingsPage(QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    auto *content = new QWidget(this);
    m_column = new QVBoxLayout(content);
    const int padding = widgets::defaultPadding;
    m_column->setContentsMargins(padding, padding, padding, padding);
    m_column->setSpacing(0);
    setWidget(content);
}
