// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace themes {

/// What tells one state of a file from another. The time of the last status change also shows a file replaced
/// by a copy that kept its times, and permissions given or taken.
struct FileIdentity
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< nanoseconds since 1970, as `changed`
    qint64 changed = 0;

    bool operator==(const FileIdentity &) const = default;
};

/// The identity of the regular file at the path, links followed; nothing when there is none. Asks once.
std::optional<FileIdentity> fileIdentity(const QString &path);

/// The identity of the running program, and so of every picture that is part of it.
const FileIdentity &programIdentity();

} // namespace themes
