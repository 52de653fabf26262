// SPDX-License-Identifier: MIT
#include "settings/linktablemodel.h"

#include "links/linkkind.h"
#include "model/config.h"
#include "model/settingsstore.h"
#include "platform/aliasresolver.h"
#include "platform/localized.h"
#include "widgets/plaintext.h"

#include <algorithm>

using platform::localizable;
using platform::localized;

LinkTableModel::LinkTableModel(Config &config, QObject *parent)
    : QAbstractTableModel(parent)
    , m_config(config)
{
}

void LinkTableModel::setTile(const TileItem &tile)
{
    m_kinds.clear();
    if (tile.id != m_tileID) {
        beginResetModel();
        m_tileID = tile.id;
        m_links = tile.tileMenuItems;
        endResetModel();
        return;
    }
    syncRows(tile.tileMenuItems);
    if (!m_links.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnsInAll - 1));
}

/// Replaces the rows between those that are the same at the start and at the end.
void LinkTableModel::syncRows(const QList<TileMenuItem> &links)
{
    const auto sameID = [](const TileMenuItem &a, const TileMenuItem &b) { return a.id == b.id; };
    const auto [oldEnd, newEnd] =
        std::mismatch(m_links.cbegin(), m_links.cend(), links.cbegin(), links.cend(), sameID);
    const auto first = int(newEnd - links.cbegin());
    const auto shorter = std::min(m_links.size(), links.size());
    qsizetype kept = 0; // at the end
    while (kept < shorter - first
           && sameID(m_links.at(m_links.size() - 1 - kept), links.at(links.size() - 1 - kept)))
        ++kept;
    const int removed = int(m_links.size() - kept) - first;
    if (removed > 0) {
        beginRemoveRows({}, first, first + removed - 1);
        m_links.remove(first, removed);
        endRemoveRows();
    }
    const int added = int(links.size() - kept) - first;
    if (added > 0)
        beginInsertRows({}, first, first + added - 1);
    m_links = links;
    if (added > 0)
        endInsertRows();
}

int LinkTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_links.size());
}

int LinkTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columnsInAll;
}

QVariant LinkTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const TileMenuItem &link = m_links.at(index.row());
    const bool isName = index.column() == NameColumn;
    const bool isAddress = index.column() == AddressColumn;
    switch (role) {
    case Qt::EditRole:
    case Qt::DisplayRole:
        if (isName)
            return link.itemName;
        if (isAddress && (role == Qt::EditRole || !links::isAliasKind(kind(index.row()))))
            return link.itemString;
        return {};
    case Qt::ToolTipRole:
        return widgets::plainToolTip(toolTip(index.row(), index.column()));
    case Qt::AccessibleTextRole:
        return accessibleText(index.row(), index.column());
    case KindRole:
        return kind(index.row());
    default:
        return {};
    }
}

bool LinkTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    const auto field = index.column() == NameColumn ? &TileMenuItem::itemName : &TileMenuItem::itemString;
    TileMenuItem &shown = m_links[index.row()];
    const QString text = value.toString();
    if (shown.*field == text)
        return true; // an editor that closes hands in its text once more
    shown.*field = text;
    bool found = false;
    m_config.editTile(m_tileID, [&](TileItem &tile) {
        QList<TileMenuItem> &links = tile.tileMenuItems;
        const auto link = std::find_if(links.begin(), links.end(),
                                       [&shown](const TileMenuItem &item) { return item.id == shown.id; });
        found = link != links.end();
        if (found)
            (*link).*field = text;
    });
    if (found)
        model::saveSettings(m_config);
    return found;
}

Qt::ItemFlags LinkTableModel::flags(const QModelIndex &index) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return Qt::NoItemFlags;
    const bool isText = index.column() == NameColumn
        || (index.column() == AddressColumn && !links::isAliasKind(kind(index.row())));
    return isText ? Qt::ItemIsEnabled | Qt::ItemIsEditable : Qt::ItemIsEnabled;
}

QVariant LinkTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    const bool isText = section == NameColumn || section == AddressColumn;
    if (role == Qt::AccessibleTextRole || (role == Qt::DisplayRole && isText)) {
        static constexpr const char *names[] = {localizable("Kind"), localizable("Name"),
                                                localizable("Address"), localizable("Remove")};
        return localized(names[section]);
    }
    return {};
}

QString LinkTableModel::kind(int row) const
{
    const auto known = m_kinds.constFind(row);
    return known != m_kinds.cend() ? *known : *m_kinds.insert(row, links::linkKind(m_links.at(row)));
}

QString LinkTableModel::accessibleText(int row, int column) const
{
    const TileMenuItem &link = m_links.at(row);
    switch (column) {
    case KindColumn:
        return kind(row);
    case NameColumn:
        return link.itemName;
    case AddressColumn:
        return links::isAliasKind(kind(row)) ? toolTip(row, column) : link.itemString;
    default:
        return localized("Remove link") + u' ' + link.itemName;
    }
}

QString LinkTableModel::toolTip(int row, int column) const
{
    const TileMenuItem &link = m_links.at(row);
    switch (column) {
    case NameColumn:
        return link.itemName;
    case AddressColumn: {
        const QString word = kind(row);
        if (!links::isAliasKind(word) && word != QLatin1String("unknown"))
            return link.itemString;
        platform::Error error;
        const std::optional<QString> target = platform::resolveAlias(link.itemString, &error);
        return target.value_or(localized("Neither an address nor the path of a file.") + u'\n'
                               + error.description());
    }
    case RemoveColumn:
        return localized("Remove link");
    default:
        return kind(row);
    }
}
