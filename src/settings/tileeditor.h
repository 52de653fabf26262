// SPDX-License-Identifier: MIT
#pragma once

#include <QUuid>
#include <QWidget>

class Config;
class LinkTable;
class LinkTableModel;
class NameField;
class PictureButton;
class QLabel;
struct TileItem;

/// Icon, name and links of one tile, and the place where links for it are dropped. Every edit finds its tile
/// again by id.
class TileEditor : public QWidget
{
    Q_OBJECT

public:
    TileEditor(Config &config, QWidget *parent);

    /// Shows the tile as it is now.
    void setTile(const TileItem &tile);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void setIcon(const QString &name);
    void setName(const QString &text);
    void removeLink(const QUuid &link);

    Config &m_config;
    QUuid m_tileID;
    PictureButton *m_icon;
    NameField *m_name;
    LinkTableModel *m_links;
    LinkTable *m_table;
    QLabel *m_note;
};
