// SPDX-License-Identifier: MIT
#pragma once

#include "model/tileitem.h"

#include <QStringList>

/// The root record of the settings file. The default values are those of a first run.
struct SettingsData
{
    QString currentTheme = QStringLiteral("2024"); ///< empty marks a file as unusable
    QStringList availableThemes = {QStringLiteral("1984"), QStringLiteral("1988"), QStringLiteral("1995"),
                                   QStringLiteral("1996"), QStringLiteral("2000"), QStringLiteral("2010"),
                                   QStringLiteral("2024")};
    bool showsDate = false;
    QString direction = QStringLiteral("ltr"); ///< "ttb" is vertical, every other word horizontal
    QString appIcon = QStringLiteral("Default");
    QList<TileItem> tileItems;
};
