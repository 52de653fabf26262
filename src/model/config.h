// SPDX-License-Identifier: MIT
#pragma once

#include "model/settingsdata.h"

#include <QObject>

#include <functional>

/// The one observable state of the program. Created once, outlives every view; views hold a reference and
/// redraw from its signals. Setting an equal value is no change. Nothing here touches a file: settingsstore.h
/// does.
class Config : public QObject
{
    Q_OBJECT

public:
    /// `documentDirectory`: path of the user's documents folder. `stateDirectory`: path of the folder that
    /// takes the safety copies (safetycopies.h); it need not exist.
    Config(const QString &documentDirectory, const QString &stateDirectory, QObject *parent = nullptr);

    const QString &currentTheme() const { return m_data.currentTheme; }
    const QStringList &availableThemes() const { return m_data.availableThemes; }
    bool showsDate() const { return m_data.showsDate; }
    const QString &direction() const { return m_data.direction; }
    bool isVertical() const { return m_data.direction == QLatin1String("ttb"); }
    const QString &appIcon() const { return m_data.appIcon; }
    const QList<TileItem> &tileItems() const { return m_data.tileItems; }
    const QString &documentDirectory() const { return m_documentDirectory; }
    const QString &stateDirectory() const { return m_stateDirectory; }
    const QStringList &availableIcons() const { return m_availableIcons; }
    bool calendarMenuVisible() const { return m_calendarMenuVisible; }
    /// The six stored fields as one record.
    const SettingsData &stored() const { return m_data; }

    void setCurrentTheme(const QString &theme);
    void setAvailableThemes(const QStringList &themes);
    void setShowsDate(bool shows);
    void setDirection(const QString &direction);
    void setAppIcon(const QString &name);
    void setTileItems(const QList<TileItem> &items);
    void setCalendarMenuVisible(bool visible);

    /// The first tile with that id; null when there is none. Valid until the next change.
    const TileItem *tile(const QUuid &id) const;
    /// Applies `edit` to the first tile with that id, in place, as one change. False when there is no such
    /// tile.
    bool editTile(const QUuid &id, const std::function<void(TileItem &)> &edit);

Q_SIGNALS:
    /// Before each change of a published field: the old values still stand.
    void willChange();
    void currentThemeChanged();
    void availableThemesChanged();
    void showsDateChanged();
    void directionChanged();
    void appIconChanged();
    void tileItemsChanged();
    void calendarMenuVisibleChanged();
    /// Once per turn of the event loop in which anything changed: the time to redraw.
    void redrawNeeded();

private:
    template <typename T> void publish(T &field, const T &value, void (Config::*changed)());
    void scheduleRedraw();

    SettingsData m_data;
    QString m_documentDirectory;
    QString m_stateDirectory;
    QStringList m_availableIcons = {QStringLiteral("Default"), QStringLiteral("1979"), QStringLiteral("1988"),
                                    QStringLiteral("1995"), QStringLiteral("2000")};
    bool m_calendarMenuVisible = false;
    bool m_redrawScheduled = false;
};
