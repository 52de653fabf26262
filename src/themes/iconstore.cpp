// SPDX-License-Identifier: MIT
#include "themes/iconstore.h"

#include "model/config.h"
#include "platform/error.h"
#include "platform/report.h"
#include "themes/imagecache.h"
#include "themes/themestore.h"

#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>

#include <cerrno>
#include <memory>

#include <dirent.h>

namespace themes {

namespace {

/// The name without its extension when that is "png", by the rules of the platform that themes come from: the
/// text after the last dot, when the dot neither begins nor ends the name and no blank follows it. Otherwise
/// empty.
QString iconNameOf(const QString &entry)
{
    const qsizetype dot = entry.lastIndexOf(QLatin1Char('.'));
    return dot > 0 && entry.mid(dot) == QLatin1String(".png") ? entry.left(dot) : QString();
}

} // namespace

QStringList currentThemeIconNames(const Config &config)
{
    const QString folder = iconsFolderURL(config, config.currentTheme());
    // Not QDir: it sorts, and leaves out links that lead nowhere.
    const std::unique_ptr<DIR, int (*)(DIR *)> list(::opendir(QFile::encodeName(folder).constData()),
                                                    ::closedir);
    if (!list) {
        const QString deed =
            QStringLiteral("The folder “%1” could not be listed").arg(folder.section(u'/', -1));
        platform::report(platform::Error::fromErrno(deed, errno, folder).fullDescription());
        return {};
    }
    QStringList names;
    while (const dirent *entry = ::readdir(list.get())) {
        const QString name = iconNameOf(QFile::decodeName(entry->d_name));
        if (!name.isEmpty())
            names += name;
    }
    return names;
}

QImage iconImage(const Config &config, const QString &name, qreal scale)
{
    const auto folder = name == QLatin1String("default") ? ThemeFolder::Elements : ThemeFolder::Icons;
    const QImage image = themeFile(config, folder, name + QStringLiteral(".png"), scale);
    return image.isNull() ? fallbackSymbol(config, QStringLiteral("questionmark.square"), scale) : image;
}

void applyAppIcon(const Config &config)
{
    // One picture of the size that window managers show. They scale it for their lists, and a start is not
    // delayed by drawing the large ones.
    constexpr QSize points(64, 64);
    const QString name = config.appIcon();
    const QString path = QStringLiteral(":/pondwicket/appicons/%1.png").arg(name);
    const int density = densityFor(screenScale());
    QImage image;
    if (!name.contains(QLatin1Char('/'))) {
        image = cachedImage(path, platform::FileStamp::ofProgram(), density, [&] {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? svgImage(file.readAll(), density, points) : QImage();
        });
    }
    if (image.isNull())
        platform::report(QStringLiteral("Failed to load icon: ") + name);
    else
        QGuiApplication::setWindowIcon(QIcon(QPixmap::fromImage(image)));
}

} // namespace themes
