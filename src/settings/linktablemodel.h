// SPDX-License-Identifier: MIT
#pragma once

#include "model/tileitem.h"

#include <QAbstractTableModel>
#include <QHash>

class Config;

/// The links of the edited tile as rows. An edit goes to Config by the ids of tile and link and is saved,
/// once for each call. A row is classified when it is first seen after a redraw: classifying asks the file
/// system and says so on standard output when a link leads nowhere.
class LinkTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { KindColumn, NameColumn, AddressColumn, RemoveColumn, columnsInAll };
    enum Role { KindRole = Qt::UserRole };

    LinkTableModel(Config &config, QObject *parent);

    /// Shows the tile as it is now. Rows of links that stay are kept, so an editor on one lives on.
    void setTile(const TileItem &tile);
    QUuid tileID() const { return m_tileID; }
    QUuid linkID(const QModelIndex &index) const { return m_links.at(index.row()).id; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void syncRows(const QList<TileMenuItem> &links);
    QString kind(int row) const;
    QString accessibleText(int row, int column) const;
    QString toolTip(int row, int column) const;

    Config &m_config;
    QUuid m_tileID;
    QList<TileMenuItem> m_links;
    mutable QHash<int, QString> m_kinds; ///< by row, since the last redraw
};
