// SPDX-License-Identifier: MIT
#pragma once

#include "model/settingsstore.h"
#include "model/tiles.h"
#include "support/stdoutcapture.h"

#include <QDir>
#include <QFile>
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
    /// The path of a new file, or of a new folder where the name ends in a slash.
    QString make(const QString &name, const QByteArray &bytes = {}) const
    {
        QDir().mkpath(at(name.section(u'/', 0, -2)));
        QFile file(at(name));
        if (!name.endsWith(u'/') && (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()))
            qFatal("cannot make %s", qPrintable(name));
        return at(name);
    }

    const QTemporaryDir root;
    Config config{at(QStringLiteral("Documents")), at(QStringLiteral("state"))};
    QUuid id;
};
