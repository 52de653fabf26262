// SPDX-License-Identifier: MIT
#include "links/tilealias.h"

#include "links/linkkind.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "model/uuidtext.h"
#include "platform/aliasfile.h"
#include "platform/aliasresolver.h"
#include "platform/desktopentry.h"
#include "platform/filepanel.h"
#include "platform/localized.h"
#include "platform/report.h"
#include "platform/workspace.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace links {

namespace {

/// "archive.tar.gz" loses ".gz"; ".profile", "etc." and "Mr. Smith" have no extension.
QString withoutExtension(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const bool hasExtension =
        dot > 0 && dot < name.size() - 1 && !name.sliced(dot + 1).contains(QLatin1Char(' '));
    return hasExtension ? name.first(dot) : name;
}

bool isAlphanumeric(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Letter_Uppercase:
    case QChar::Letter_Lowercase:
    case QChar::Letter_Titlecase:
    case QChar::Letter_Modifier:
    case QChar::Letter_Other:
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Number_DecimalDigit:
    case QChar::Number_Letter:
    case QChar::Number_Other:
        return true;
    default:
        return false;
    }
}

bool liesInTileFolder(const Config &config, const QString &path)
{
    const QFileInfo file(path);
    const QString folder = QFileInfo(file.path()).canonicalFilePath();
    const QString notes = platform::localizedFileName("Notes") + QLatin1String(".txt");
    if (folder.isEmpty() || file.fileName() == notes || (file.isDir() && !file.isSymLink()))
        return false;
    const auto holdsIt = [&folder](const TileItem &tile) {
        const QString tileFolder = model::tileFolderPath(tile);
        return !tileFolder.isEmpty() && QFileInfo(tileFolder).canonicalFilePath() == folder;
    };
    return std::any_of(config.tileItems().cbegin(), config.tileItems().cend(), holdsIt);
}

} // namespace

QString linkName(const QByteArray &target)
{
    const std::optional<platform::DesktopEntry> entry = platform::readDesktopEntry(target);
    const QString fileName = QFile::decodeName(target.sliced(target.lastIndexOf('/') + 1));
    const QString name = entry && !entry->name.isEmpty() ? entry->name : withoutExtension(fileName);
    QString kept;
    for (const char32_t c : name.toUcs4()) {
        if (isAlphanumeric(c))
            kept += QChar::fromUcs4(c);
    }
    return kept;
}

void createAlias(const Config &config, const QUuid &tileId, const QByteArray &target,
                 const QString &aliasName)
{
    const TileItem *tile = config.tile(tileId);
    if (!tile)
        return;
    platform::Error error;
    const QString path = model::tileFilePath(*tile, aliasName);
    if (!platform::writeAliasFile(target, QFile::encodeName(path), &error))
        platform::report(QStringLiteral("Failed to create alias: ") + error.description());
    else
        platform::holdTargets({QFile::encodeName(path)});
}

void linkFile(Config &config, const QUuid &tileId, const QByteArray &target)
{
    const QByteArray path = platform::absolutePath(target, "/");
    const QString aliasName = model::uuidText(QUuid::createUuid());
    createAlias(config, tileId, path, aliasName);
    const bool found = config.editTile(tileId, [&](TileItem &tile) {
        TileMenuItem link;
        link.itemString = model::tileFilePath(tile, aliasName);
        link.itemName = linkName(path);
        tile.tileMenuItems.append(link);
    });
    if (found)
        model::saveSettings(config);
}

void linkApplicationOrFile(Config &config, const QUuid &tileId, platform::FilePanel &panel)
{
    const std::optional<QString> path =
        panel.chooseFileOrFolder(platform::localized("Link application or file"));
    if (path)
        linkFile(config, tileId, QFile::encodeName(*path));
}

void recycleAliasFile(const Config &config, const TileMenuItem &link)
{
    const QString path = link.itemString;
    const auto isOurs = [](const QString &file) { return platform::isAliasFile(QFile::encodeName(file)); };
    if (!isAlias(link) || !(isOurs(path) || liesInTileFolder(config, path)))
        return;
    platform::moveToTrash(path, [path, isOurs](const platform::Error &error) {
        if (!platform::isWithoutTrash(error))
            platform::report(error.description());
        else if (isOurs(path))
            QFile::remove(path);
    });
}

} // namespace links
