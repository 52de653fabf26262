// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "settings/settingsview.h"
#include "support/fakefilepanel.h"
#include "support/savewatcher.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

/// The settings window of a program with some tiles and no themes on disk, open at its last tab.
class SettingsFixture
{
public:
    explicit SettingsFixture(int tileCount)
    {
        for (int i = 0; i < tileCount; ++i)
            model::addTile(config);
        model::saveSettings(config);
        watcher.emplace(model::applicationFolder(config));
        open();
        saves();
    }

    void open()
    {
        window = std::make_unique<SettingsView>(config, panel);
        window->show();
        window->setCurrentIndex(window->count() - 1);
    }
    /// How often the settings were saved since the last call, what changes have put off included.
    int saves()
    {
        QCoreApplication::processEvents();
        return watcher->saves();
    }
    const TileItem &tile(int index = 0) const { return config.tileItems().at(index); }
    /// A stored link of the first tile.
    TileMenuItem link(int index) const { return tile().tileMenuItems.value(index); }
    void removeTile() { model::removeTile(config, tile().id); }
    template <typename T = QWidget> T &find(const char *name) const
    {
        T *found = window->findChild<T *>(QLatin1String(name));
        Q_ASSERT_X(found, "find", name);
        return *found;
    }
    void click(const char *name) const { QTest::mouseClick(&find(name), Qt::LeftButton); }
    void setLinks(const QStringList &addresses)
    {
        QList<TileMenuItem> links;
        for (const QString &address : addresses)
            links.append({QUuid::createUuid(), address, u"name"_qs});
        config.editTile(tile().id, [&links](TileItem &item) { item.tileMenuItems = links; });
        saves();
    }

    QTemporaryDir home{QDir::homePath() + u"/.settings-test-XXXXXX"_qs};
    Config config{home.path(), home.filePath(u"state"_qs)};
    FakeFilePanel panel;
    std::optional<SaveWatcher> watcher;
    std::unique_ptr<SettingsView> window;
};
