// SPDX-License-Identifier: MIT
#pragma once

#include "model/tilemenuitem.h"

#include <QAbstractListModel>
#include <QColor>

/// The links of one tile as rows. A row is classified when it is first drawn, not before: classifying asks
/// the file system and says so on standard output when a link leads nowhere.
class LinkListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    LinkListModel(const QList<TileMenuItem> &links, QObject *parent);

    enum Role { SymbolRole = Qt::UserRole, TintRole, AddressRole };

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    /// Forgets what the rows were found to be.
    void reclassify();

private:
    struct Kind
    {
        QString symbol;
        QColor tint;
    };
    const Kind &kind(int row) const;

    QList<TileMenuItem> m_links;
    mutable QHash<int, Kind> m_kinds;
};
