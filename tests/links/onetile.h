// SPDX-License-Identifier: MIT
#pragma once

#include "model/settingsstore.h"
#include "model/tiles.h"
#include "support/files.h"
#include "support/stdoutcapture.h"

#include <QTemporaryDir>
#include <QtTest>

/// A tile without links in folders that vanish.
struct OneTile
{
    explicit OneTile(const QString &folder = QDir::tempPath())
        : root(folder + QStringLiteral("/onetile-XXXXXX"))
    {
        model::addTile(config);
        config.editTile(id = tile().id, [](TileItem &item) { item.tileMenuItems.clear(); });
        saved();
    }
    const TileItem &tile() const { return config.tileItems().constFirst(); }
    const QList<TileMenuItem> &links() const { return tile().tileMenuItems; }
    QStringList addresses() const
    {
        QStringList all;
        for (const TileMenuItem &link : links())
            all.append(link.itemString);
        return all;
    }
    /// Whether the settings were saved since the last call.
    bool saved() { return QFile::remove(model::settingsFileURL(config)); }
    QString at(const QString &name) const { return root.filePath(name); }
    QString make(const QString &name, const QByteArray &bytes = {}) const
    {
        return support::make(at(name), bytes);
    }

    const QTemporaryDir root;
    Config config{at(QStringLiteral("Documents")), at(QStringLiteral("state"))};
    QUuid id;
};
