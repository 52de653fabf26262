// SPDX-License-Identifier: MIT
#include "platform/trust.h"

#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

// Links and dots taken out; empty when nothing stands there.
QByteArray canonical(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.constData(), nullptr), std::free);
    return QByteArray(real.get());
}

bool isInstalled(const QByteArray &path)
{
    // By its own place as well as by its target: software stores put links into their applications folder.
    const QByteArray place = canonical(path.first(path.lastIndexOf('/') + 1)) + '/';
    const QByteArray target = canonical(path);
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    return std::ranges::any_of(folders, [&](const QString &folder) {
        const QByteArray applications = canonical(QFile::encodeName(folder));
        return !applications.isEmpty()
            && (place.startsWith(applications + '/') || target.startsWith(applications + '/'));
    });
}

} // namespace

bool mayLaunchDesktopFile(const QByteArray &path)
{
    if (isInstalled(path))
        return true;
    struct stat status;
    return ::stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode)
        && (status.st_uid == ::getuid() || status.st_uid == 0) && (status.st_mode & S_IXUSR)
        && !(status.st_mode & (S_IWGRP | S_IWOTH));
}

} // namespace platform
