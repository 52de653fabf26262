// SPDX-License-Identifier: MIT
#pragma once

#include "model/tileitem.h"

#include <QListView>

#include <optional>

class Config;
class LinkListModel;
struct StripServices;

/// The list of a tile's links. Only rows that are seen are classified and drawn.
class TileMenu : public QListView
{
    Q_OBJECT

public:
    TileMenu(Config &config, const TileItem &tileItem, StripServices &services, QWidget *parent);

    /// Address of the link under the pointer: every row with that address is drawn dimmed.
    const std::optional<QString> &hoveredIndex() const { return m_hoveredIndex; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    void open(const QModelIndex &row);
    void setHoveredIndex(const std::optional<QString> &address);

    StripServices &m_services;
    QList<TileMenuItem> m_links;
    std::optional<QString> m_hoveredIndex;
};
