// SPDX-License-Identifier: MIT
// What the pictures of the themes cost: their installation, a redraw's look-ups, many changes of theme.
#include "model/config.h"
#include "platform/files.h"
#include "platform/report.h"
#include "themes/iconstore.h"
#include "themes/imagecache.h"
#include "themes/imagecatalog.h"
#include "themes/themestore.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <ctime>
#include <functional>

using namespace themes;

namespace {

constexpr int tileCount = 20;

/// Prints the time and the processor's time for a round, the second being the one to compare on a busy
/// machine.
void measure(const char *what, int rounds, const std::function<void()> &deed)
{
    QElapsedTimer timer;
    timer.start();
    const std::clock_t begin = std::clock();
    for (int round = 0; round < rounds; ++round)
        deed();
    const double cpu = double(std::clock() - begin) * 1e3 / CLOCKS_PER_SEC;
    platform::report(QStringLiteral("%1: %2 ms, %3 ms of the processor's")
                         .arg(QString::fromLatin1(what).leftJustified(36))
                         .arg(double(timer.nsecsElapsed()) / 1e6 / rounds, 0, 'f', 3)
                         .arg(cpu / rounds, 0, 'f', 3));
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
    measure("first installation of all themes", 1, [&] { installBuiltInThemes(config); });

    QList<QByteArray> files;
    QDirIterator entries(folder.path(), QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files += platform::readWholeFile(entries.next(), nullptr).value_or(QByteArray());
    const QString copies = folder.filePath(QStringLiteral("copies"));
    platform::makeFolder(copies, nullptr);
    qint64 total = 0;
    measure("the same bytes written plainly", 1, [&] {
        for (qsizetype i = 0; i < files.size(); ++i) {
            platform::writeInPlace(copies + QLatin1Char('/') + QString::number(i), files.at(i), nullptr);
            total += files.at(i).size();
        }
    });
    platform::report(QStringLiteral("%1 files, %2 KB").arg(files.size()).arg(total / 1024));

    for (const int scale : {1, 2}) {
        platform::report(QStringLiteral("A redraw of %1 tiles at %2x").arg(tileCount).arg(scale));
        measure("  files decoded", 10, [&] {
            clearImageCache();
            lookUp(config, scale);
        });
        measure("  from memory", 1000, [&] { lookUp(config, scale); });
        saveImageCache();
        measure("  from the saved pictures", 100, [&] {
            clearImageCache();
            lookUp(config, scale);
        });
    }

    const QStringList &themes = config.availableThemes();
    for (int i = 0; i <= 1000; ++i) {
        config.setCurrentTheme(themes.at(i % themes.size()));
        lookUp(config, 2);
        if (i == 50 || i == 1000)
            platform::report(
                QStringLiteral("resident after %1 changes of theme: %2 KB").arg(i).arg(residentKilobytes()));
    }
    return 0;
}
