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

/// The settings window of a program with some tiles and no themes on disk.
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
    }

    void open()
    {
        window = std::make_unique<SettingsView>(config, panel);
        window->show();
        window->setCurrentIndex(window->count() - 1);
        redraw();
    }
    /// Delivers what changes have put off.
    static void redraw() { QCoreApplication::processEvents(); }
    int saves()
    {
        redraw();
        return watcher->saves();
    }
    const TileItem &tile(int index = 0) const { return config.tileItems().at(index); }
    template <typename T> T &find(const char *name) const
    {
        T *found = window->findChild<T *>(QLatin1String(name));
        if (!found)
            qFatal("no %s", name);
        return *found;
    }
    void setLinks(const QList<TileMenuItem> &links, int index = 0)
    {
        config.editTile(tile(index).id, [&links](TileItem &item) { item.tileMenuItems = links; });
        redraw();
    }
    static TileMenuItem link(const QString &address, const QString &name = QStringLiteral("name"))
    {
        TileMenuItem item;
        item.itemString = address;
        item.itemName = name;
        return item;
    }

    QTemporaryDir home{QDir::homePath() + QStringLiteral("/.settings-test-XXXXXX")};
    Config config{home.path(), home.filePath(QStringLiteral("state"))};
    FakeFilePanel panel;
    std::optional<SaveWatcher> watcher;
    std::unique_ptr<SettingsView> window;
};
