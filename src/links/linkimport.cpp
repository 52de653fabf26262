// SPDX-License-Identifier: MIT
#include "links/linkimport.h"

#include "links/linktext.h"
#include "platform/filepanel.h"
#include "platform/files.h"
#include "platform/localized.h"
#include "platform/report.h"

#include <QCursor>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeDatabase>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

namespace links {

namespace {

/// Past this size the user sees that it takes a moment.
constexpr qint64 largeFile = 8 << 20; // bytes

} // namespace

bool isImportableTextFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status;
    if (::stat(name.constData(), &status) != 0 || !S_ISREG(status.st_mode)
        || ::access(name.constData(), R_OK) != 0)
        return false;
    // By its content an empty file is "empty", whatever its name.
    const auto mode = status.st_size == 0 ? QMimeDatabase::MatchExtension : QMimeDatabase::MatchDefault;
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path, mode);
    const auto is = [&type](const char *parent) { return type.inherits(QLatin1String(parent)); };
    // The database counts these among plain text, but their text is not what people read.
    const bool picture = type.name().startsWith(QLatin1String("image/")) && !is("image/svg+xml");
    if (picture || is("application/rtf") || is("application/postscript"))
        return false;
    constexpr const char *importable[] = {"text/plain",
                                          "text/csv",
                                          "text/tab-separated-values",
                                          "text/html",
                                          "application/xhtml+xml",
                                          "application/javascript",
                                          "text/x-c++src",
                                          "application/x-shellscript",
                                          "text/vcard",
                                          "application/json",
                                          "image/svg+xml",
                                          "text/css",
                                          "application/xml"};
    return std::ranges::any_of(importable, is);
}

void importLinksFromPath(Config &config, const QUuid &tileId, const QString &path)
{
    if (!isImportableTextFile(path))
        return;
    platform::Error error;
    const std::optional<QByteArray> bytes = platform::readWholeFile(path, &error);
    // The check costs a tenth of making a string of the bytes; that is done for its message alone.
    const bool readable = bytes && (bytes->isValidUtf8() || platform::decodeUtf8(*bytes, &error));
    if (readable)
        appendLinks(config, tileId, linksFromText(*bytes));
    else
        platform::report(QStringLiteral("Failed to read file: ") + error.description());
}

void importLinksFromFile(Config &config, const QUuid &tileId, platform::FilePanel &panel)
{
    const std::optional<QString> path = panel.chooseFile(platform::localized("Import links from file"));
    if (!path)
        return;
    const bool takesTime = QFileInfo(*path).size() > largeFile;
    if (takesTime)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    importLinksFromPath(config, tileId, *path);
    if (takesTime)
        QGuiApplication::restoreOverrideCursor();
}

} // namespace links
