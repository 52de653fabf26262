// SPDX-License-Identifier: MIT
// What the pictures of the themes cost: their installation, a redraw's look-ups, many changes of theme.
#include "table.h"

#include "model/config.h"
#include "platform/files.h"
#include "themes/iconstore.h"
#include "themes/imagecache.h"
#include "themes/imagecatalog.h"
#include "themes/themestore.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <functional>

using namespace themes;

namespace {

constexpr int tileCount = 20;

void measure(bench::Table &table, const QString &what, int rounds, const std::function<void()> &deed)
{
    const double begin = bench::processorTime();
    for (int round = 0; round < rounds; ++round)
        deed();
    table.row({what, bench::number((bench::processorTime() - begin) / rounds, 3)});
}

/// What a strip asks for at a redraw.
void lookUp(const Config &config, qreal scale)
{
    const QStringList icons = builtInIconNames(config.currentTheme());
    tabLeadingImage(config, scale);
    closeImage(config, scale);
    tileImage(config, scale);
    homeImage(config, scale);
    for (int tile = 0; tile < tileCount; ++tile) {
        tileImage(config, scale);
        iconImage(config, icons.at(tile % icons.size()), scale);
    }
    tabTrailingImage(config, scale);
    minimizeImage(config, scale);
}

qint64 residentKilobytes()
{
    // Pages, the second number of statm.
    const auto bytes = platform::readWholeFile(QStringLiteral("/proc/self/statm"), nullptr);
    return bytes ? bytes->split(' ').at(1).toLongLong() * 4 : 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QTemporaryDir folder;
    qputenv("XDG_CACHE_HOME", QFile::encodeName(folder.filePath(QStringLiteral("cache"))));
    Config config(folder.path(), folder.path());
    bench::Table table(QStringLiteral("Pictures of the themes, ms on a processor"),
                       {QStringLiteral("what"), QStringLiteral("ms")});
    measure(table, QStringLiteral("first installation of all themes"), 1,
            [&] { installBuiltInThemes(config); });

    QList<QByteArray> files;
    QDirIterator entries(folder.path(), QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files += platform::readWholeFile(entries.next(), nullptr).value_or(QByteArray());
    const QString copies = folder.filePath(QStringLiteral("copies"));
    platform::makeFolder(copies, nullptr);
    measure(table, QStringLiteral("the same %1 files written plainly").arg(files.size()), 1, [&] {
        for (qsizetype i = 0; i < files.size(); ++i) {
            platform::writeInPlace(copies + QLatin1Char('/') + QString::number(i), files.at(i), nullptr);
        }
    });

    for (const int scale : {1, 2}) {
        const QString redraw = QStringLiteral("look-ups for %1 tiles at %2x, ").arg(tileCount).arg(scale);
        measure(table, redraw + QStringLiteral("files decoded"), 10, [&] {
            clearImageCache();
            lookUp(config, scale);
        });
        measure(table, redraw + QStringLiteral("from memory"), 1000, [&] { lookUp(config, scale); });
        saveImageCache();
        measure(table, redraw + QStringLiteral("from the saved pictures"), 100, [&] {
            clearImageCache();
            lookUp(config, scale);
        });
    }

    bench::Table memory(QStringLiteral("Memory after changes of theme"),
                        {QStringLiteral("changes"), QStringLiteral("MiB")});
    const QStringList &themes = config.availableThemes();
    for (int i = 0; i <= 1000; ++i) {
        config.setCurrentTheme(themes.at(i % themes.size()));
        lookUp(config, 2);
        if (i == 50 || i == 1000)
            memory.row({QString::number(i), bench::number(double(residentKilobytes()) / 1024, 1)});
    }
    return 0;
}
