// SPDX-License-Identifier: MIT
#include "platform/fileidentity.h"

#include <QFile>

#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr qint64 second = 1'000'000'000; // nanoseconds

/// The kernel's name for a file within its file system. It carries a generation number, so it differs from
/// that of an earlier file with the same inode number. Opening by it takes privileges; comparing takes none.
QByteArray fileHandle(const char *path)
{
    alignas(file_handle) char room[sizeof(file_handle) + MAX_HANDLE_SZ] = {};
    auto *handle = reinterpret_cast<file_handle *>(room);
    handle->handle_bytes = MAX_HANDLE_SZ;
    int mountId = 0;
    if (::name_to_handle_at(AT_FDCWD, path, handle, &mountId, AT_SYMLINK_FOLLOW) != 0)
        return {};
    const QByteArray type = QByteArray::number(uint(handle->handle_type), 16).rightJustified(8, '0');
    return type
        + QByteArray::fromRawData(reinterpret_cast<const char *>(handle->f_handle), handle->handle_bytes)
              .toHex();
}

} // namespace

FileKind fileKind(mode_t mode)
{
    if (S_ISREG(mode))
        return FileKind::File;
    return S_ISDIR(mode) ? FileKind::Folder : FileKind::Other;
}

std::optional<FileIdentity> identify(const QByteArray &path)
{
    struct statx status;
    if (::statx(AT_FDCWD, path.constData(), 0, STATX_INO | STATX_BTIME, &status) != 0)
        return std::nullopt;
    FileIdentity identity;
    identity.inode = status.stx_ino;
    if (status.stx_mask & STATX_BTIME) {
        identity.birth = QByteArray::number(qint64(status.stx_btime.tv_sec)) + '.'
            + QByteArray::number(status.stx_btime.tv_nsec).rightJustified(9, '0');
    }
    identity.handle = fileHandle(path.constData());
    return identity;
}

FileStamp FileStamp::of(const struct stat &status)
{
    // Programs may set the time of modification back, but not this one.
    return {status.st_dev, status.st_ino, status.st_size,
            status.st_ctim.tv_sec * second + status.st_ctim.tv_nsec};
}

std::optional<FileStamp> FileStamp::ofFile(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return of(status);
}

const FileStamp &FileStamp::ofProgram()
{
    // By its path: a program that runs under a checking tool is not what the link leads to.
    static const FileStamp stamp =
        ofFile(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).value_or(FileStamp());
    return stamp;
}

bool FileStamp::isSettled() const
{
    // File systems count in ticks of the kernel, a few milliseconds each, and some in whole seconds.
    const qint64 grain = changed % second == 0 ? 2 * second : second / 20;
    timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    return std::abs(now.tv_sec * second + now.tv_nsec - changed) > grain;
}

quint64 fileSystemId(const QByteArray &path)
{
    struct statfs status;
    if (::statfs(path.constData(), &status) != 0)
        return 0;
    return quint64(quint32(status.f_fsid.__val[0])) << 32 | quint32(status.f_fsid.__val[1]);
}

bool isSameFile(const FileIdentity &recorded, const FileIdentity &present)
{
    if (recorded.inode == 0 || recorded.inode != present.inode)
        return false;
    if (recorded.birth.isEmpty() && recorded.handle.isEmpty())
        return false;
    return (recorded.birth.isEmpty() || recorded.birth == present.birth)
        && (recorded.handle.isEmpty() || recorded.handle == present.handle);
}

} // namespace platform
