// SPDX-License-Identifier: MIT
#include "model/config.h"

#include <algorithm>

Config::Config(const QString &documentDirectory, const QString &stateDirectory, QObject *parent)
    : QObject(parent)
    , m_documentDirectory(documentDirectory)
    , m_stateDirectory(stateDirectory)
{
}

template <typename T> void Config::publish(T &field, const T &value, void (Config::*changed)())
{
    if (field == value)
        return;
    // A copy: the caller may have handed in a part of the field itself, and observers may change it again.
    const T next = value;
    Q_EMIT willChange();
    field = next;
    scheduleRedraw();
    Q_EMIT(this->*changed)();
}

void Config::scheduleRedraw()
{
    if (m_redrawScheduled)
        return;
    m_redrawScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_redrawScheduled = false;
            Q_EMIT redrawNeeded();
        },
        Qt::QueuedConnection);
}

void Config::setCurrentTheme(const QString &theme)
{
    publish(m_data.currentTheme, theme, &Config::currentThemeChanged);
}

void Config::setAvailableThemes(const QStringList &themes)
{
    publish(m_data.availableThemes, themes, &Config::availableThemesChanged);
}

void Config::setShowsDate(bool shows)
{
    publish(m_data.showsDate, shows, &Config::showsDateChanged);
}

void Config::setDirection(const QString &direction)
{
    publish(m_data.direction, direction, &Config::directionChanged);
}

void Config::setAppIcon(const QString &name)
{
    publish(m_data.appIcon, name, &Config::appIconChanged);
}

void Config::setTileItems(const QList<TileItem> &items)
{
    publish(m_data.tileItems, items, &Config::tileItemsChanged);
}

void Config::setCalendarMenuVisible(bool visible)
{
    publish(m_calendarMenuVisible, visible, &Config::calendarMenuVisibleChanged);
}

const TileItem *Config::tile(const QUuid &id) const
{
    const auto found = std::find_if(m_data.tileItems.cbegin(), m_data.tileItems.cend(),
                                    [&id](const TileItem &item) { return item.id == id; });
    return found == m_data.tileItems.cend() ? nullptr : &*found;
}

bool Config::editTile(const QUuid &id, const std::function<void(TileItem &)> &edit)
{
    const TileItem *current = tile(id);
    if (!current)
        return false;
    QList<TileItem> items = m_data.tileItems;
    edit(items[current - m_data.tileItems.constData()]);
    setTileItems(items);
    return true;
}
