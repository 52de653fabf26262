// SPDX-License-Identifier: MIT
#include "platform/autostart.h"

#include "platform/applicationid.h"
#include "platform/desktopentry.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>

#include <unistd.h>

namespace platform {

namespace {

QString autostartFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QLatin1String("/autostart");
}

QString entryPath()
{
    return autostartFolder() + QLatin1Char('/') + applicationId() + QLatin1String(".desktop");
}

/// A path as the value of a key: what would read as an escape is doubled.
QByteArray keyValue(QByteArray path)
{
    return path.replace('\\', "\\\\").replace('\n', "\\n").replace('\t', "\\t").replace('\r', "\\r");
}

/// A path as the one word of a command line, which has a quoting of its own below that of values.
QByteArray commandWord(QByteArray path)
{
    for (const char special : {'\\', '"', '`', '$'})
        path.replace(special, QByteArray("\\") + special);
    return keyValue('"' + path.replace('%', "%%") + '"');
}

} // namespace

bool startsAtLogin()
{
    const std::optional<DesktopEntry> entry = readDesktopEntry(QFile::encodeName(entryPath()));
    return entry && entry->isApplication && !entry->isDisabled;
}

bool setStartsAtLogin(bool starts, Error *error)
{
    const QString path = entryPath();
    if (starts) {
        const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
        return makeFolder(autostartFolder(), error)
            && writeAtomically(path,
                               "[Desktop Entry]\nType=Application\nName=pondWicket\nIcon="
                                   + applicationId().toUtf8() + "\nExec=" + commandWord(program)
                                   + "\nTryExec=" + keyValue(program) + "\nTerminal=false\n",
                               error);
    }
    if (::unlink(QFile::encodeName(path).constData()) == 0 || errno == ENOENT)
        return true;
    if (error)
        *error = Error::fromErrno(QStringLiteral("The file “%1” could not be removed").arg(displayName(path)),
                                  errno, path);
    return false;
}

} // namespace platform
