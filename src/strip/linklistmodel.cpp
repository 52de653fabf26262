// SPDX-License-Identifier: MIT
#include "strip/linklistmodel.h"

#include "links/linkkind.h"
#include "widgets/plaintext.h"

LinkListModel::LinkListModel(const QList<TileMenuItem> &links, QObject *parent)
    : QAbstractListModel(parent)
    , m_links(links)
{
}

int LinkListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_links.size());
}

QVariant LinkListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const TileMenuItem &link = m_links.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return link.itemName;
    case Qt::AccessibleDescriptionRole:
    case AddressRole:
        return link.itemString;
    case Qt::ToolTipRole:
        return widgets::plainToolTip(link.itemName + QLatin1Char('\n') + link.itemString);
    case SymbolRole:
        return kind(index.row()).symbol;
    case TintRole:
        return kind(index.row()).tint;
    default:
        return {};
    }
}

void LinkListModel::reclassify()
{
    m_kinds.clear();
    if (!m_links.isEmpty())
        Q_EMIT dataChanged(index(0), index(int(m_links.size()) - 1));
}

const LinkListModel::Kind &LinkListModel::kind(int row) const
{
    const auto known = m_kinds.constFind(row);
    if (known != m_kinds.cend())
        return *known;
    const QString word = links::linkKind(m_links.at(row));
    return *m_kinds.insert(row, {links::symbolOfKind(word), links::tintOfKind(word)});
}
