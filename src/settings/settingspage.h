// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>
#include <QVBoxLayout>

/// One tab of the settings window: a padded column that scrolls when large fonts leave too little room.
class SettingsPage : public QScrollArea
{
    Q_OBJECT

public:
    explicit SettingsPage(QWidget *parent);

protected:
    QVBoxLayout *column() const { return m_column; }

private:
    QVBoxLayout *m_column;
};
