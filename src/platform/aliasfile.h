// SPDX-License-Identifier: MIT
#pragma once

#include "platform/error.h"
#include "platform/fileidentity.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace platform {

// Paths here are bytes, as the file system has them: a name that is not UTF-8 would not survive a QString.

/// Larger files are no alias files of ours.
constexpr qsizetype maxAliasFileSize = 64 * 1024; // bytes

/// What an alias file says of its target: enough to find it again after it or a folder above it was moved.
struct AliasRecord
{
    QByteArray path; ///< absolute, symbolic links in it not resolved
    QByteArray relativePath; ///< from the alias file's folder; empty when not recorded
    FileKind kind = FileKind::Any;
    quint64 device = 0;
    quint64 fileSystem = 0; ///< statfs's id; 0 when not recorded
    FileIdentity identity;
    qint64 size = -1; ///< bytes
    QByteArray changed; ///< "seconds.nanoseconds"
    QList<FileIdentity> folders; ///< those above the target, nearest first, up to the file system's root

    bool operator==(const AliasRecord &) const = default;
};

/// True when the bytes begin with the first line of an alias file, of whatever version.
bool hasAliasMark(QByteArrayView bytes);

/// The record in an alias file's text; nothing when it is damaged or of another version.
std::optional<AliasRecord> parseAlias(QByteArrayView text, Error *error);
QByteArray serialiseAlias(const AliasRecord &record);

/// The record of what stands at `target` now, for an alias file at `aliasFile`; both absolute.
std::optional<AliasRecord> describeTarget(const QByteArray &target, const QByteArray &aliasFile,
                                          Error *error);

/// Writes an alias file for `target`, whole or not at all, readable by its owner only.
bool writeAliasFile(const QByteArray &target, const QByteArray &aliasFile, Error *error);

/// True when a regular file with an alias file's first line stands at the path.
bool isAliasFile(const QByteArray &path);

/// `path` as it is when absolute, otherwise below `folder`; "." and ".." taken out by text alone.
QByteArray absolutePath(const QByteArray &path, const QByteArray &folder);

/// The path without its last component: "/" for "/x".
QByteArray parentPath(const QByteArray &path);

} // namespace platform
