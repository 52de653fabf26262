// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

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

/// True when `present` is surely the recorded file: the inode number and whatever else was recorded agree. A
/// record of the inode number alone never suffices.
bool isSameFile(const FileIdentity &recorded, const FileIdentity &present);

} // namespace platform
