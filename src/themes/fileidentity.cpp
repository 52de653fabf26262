// SPDX-License-Identifier: MIT
#include "themes/fileidentity.h"

#include <QFile>

#include <sys/stat.h>

namespace themes {

namespace {

qint64 nanoseconds(const timespec &time)
{
    return time.tv_sec * qint64(1'000'000'000) + time.tv_nsec;
}

} // namespace

std::optional<FileIdentity> fileIdentity(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
                        nanoseconds(status.st_ctim)};
}

const FileIdentity &programIdentity()
{
    // By its path: a program that runs under a checking tool is not what the link leads to.
    static const FileIdentity identity =
        fileIdentity(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).value_or(FileIdentity());
    return identity;
}

} // namespace themes
