// SPDX-License-Identifier: MIT
#include "platform/userfolders.h"

#include "platform/files.h"

#include <QDir>
#include <QStandardPaths>

#include <cerrno>

namespace platform {

std::optional<QString> documentsFolder(Error *error)
{
    const QString path = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    // The toolkit takes the root for the home folder where there is none.
    if (QDir::cleanPath(path) == QLatin1String("/Documents")) {
        if (error)
            *error = Error::fromErrno(QStringLiteral("There is no home folder"), ENOENT, path);
        return std::nullopt;
    }
    if (!QDir::isAbsolutePath(path)) {
        if (error)
            *error = Error::fromErrno(
                QStringLiteral("The documents folder's place “%1” is not absolute").arg(path), EINVAL, path);
        return std::nullopt;
    }
    if (!makeFolder(path, error))
        return std::nullopt;
    return path;
}

QString stateFolder()
{
    QString home = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(home)) // relative ones are to be ignored, says the base directory specification
        home = QDir::homePath() + QStringLiteral("/.local/state");
    return QDir::cleanPath(home) + QStringLiteral("/pondWicket");
}

} // namespace platform
