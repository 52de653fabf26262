// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

#include <sys/stat.h>

namespace platform {

enum class FileKind {
    Any, ///< of a record that does not say
    File,
    Folder,
    Other ///< a device, a pipe, a socket
};

FileKind fileKind(mode_t mode);

/// What tells one file from another wherever it lies and whatever it is called. An inode number is given out
/// again at once when a file is deleted, and files made together share a birth time: only all parts together
/// identify.
struct FileIdentity
{
    quint64 inode = 0; ///< 0 is "not known" and matches nothing
    QByteArray birth; ///< "seconds.nanoseconds"; empty where the file system keeps none
    QByteArray handle; ///< as hexadecimal digits, its type first; empty where the file system gives none

    bool operator==(const FileIdentity &) const = default;
};

/// The identity of what stands at the path, symbolic links followed. Nothing when there is nothing.
std::optional<FileIdentity> identify(const QByteArray &path);

/// The number of the file system that holds the path; 0 when there is none.
quint64 fileSystemId(const QByteArray &path);

/// True when `present` is surely the recorded file: the inode number and whatever else was recorded agree. A
/// record of the inode number alone never suffices.
bool isSameFile(const FileIdentity &recorded, const FileIdentity &present);

/// What a stat tells of a file's state: equal stamps mean that nothing about it has changed between them. The
/// time of the last change also shows a file replaced by a copy that kept its times.
struct FileStamp
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 changed = 0; ///< nanoseconds since 1970

    static FileStamp of(const struct stat &status);
    /// The stamp of the regular file at the path, links followed; nothing when there is none.
    static std::optional<FileStamp> ofFile(const QString &path);
    /// The stamp of the running program, and so of all that is part of it.
    static const FileStamp &ofProgram();
    /// False when the last change is so recent that the next one could carry the same time.
    bool isSettled() const;

    bool operator==(const FileStamp &) const = default;
};

} // namespace platform
