// SPDX-License-Identifier: MIT
#include "platform/contenttype.h"

#include "platform/desktopentry.h"

#include <QByteArrayView>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

bool isExecutableFile(const QByteArray &path)
{
    struct stat status;
    return ::stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode)
        && ::access(path.constData(), X_OK) == 0;
}

/// An ELF program that says "AI" and its type, 1 or 2, in the bytes that the format leaves free.
bool hasAppImageMark(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return false;
    char start[11];
    const ssize_t length = ::pread(file, start, sizeof start, 0);
    ::close(file);
    return length == sizeof start && QByteArrayView(start, 4) == "\177ELF" && start[8] == 'A'
        && start[9] == 'I' && (start[10] == 1 || start[10] == 2);
}

} // namespace

bool isApplicationFolder(const QByteArray &path)
{
    return path.endsWith(".app") || isExecutableFile(path + "/AppRun");
}

bool isApplicationFile(const QByteArray &path)
{
    if (path.endsWith(".desktop")) {
        const std::optional<DesktopEntry> entry = readDesktopEntry(path);
        return entry && entry->isApplication;
    }
    return isExecutableFile(path) && hasAppImageMark(path);
}

} // namespace platform
