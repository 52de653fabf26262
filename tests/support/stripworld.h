// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"
#include "strip/services.h"
#include "support/fakefilepanel.h"
#include "support/recordinglinkopener.h"

#include <QTemporaryDir>

namespace support {

/// Documents of a test's own, a Config on them and services that record.
struct StripWorld
{
    StripWorld()
        : config(folder.filePath(QStringLiteral("Documents")), folder.filePath(QStringLiteral("state")))
    {
    }

    TileItem addTile(const QString &name, const QStringList &addresses)
    {
        TileItem tile;
        tile.iconName = QStringLiteral("default");
        tile.tileName = name;
        tile.tileDirectory = QLatin1String("file://") + folder.path() + QLatin1String("/tile-") + name;
        for (const QString &address : addresses)
            tile.tileMenuItems.append({QUuid::createUuid(), address, QLatin1String("to ") + address});
        config.setTileItems(config.tileItems() + QList<TileItem>{tile});
        return tile;
    }

    QTemporaryDir folder;
    Config config;
    RecordingLinkOpener opener;
    int settingsOpened = 0;
    FakeFilePanel filePanel;
    StripServices services{opener, filePanel, [this] { ++settingsOpened; }};
};

} // namespace support
