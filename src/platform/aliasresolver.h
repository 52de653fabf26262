// SPDX-License-Identifier: MIT
#pragma once

#include "platform/error.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace platform {

/// Where a path leads.
struct AliasTarget
{
    QByteArray path; ///< bytes as the file system has them: a name need not be UTF-8
    bool isFolder = false;
};

/// Where the path leads now: an alias file to its target, through alias files that lead to alias files;
/// anything else that exists to itself. Nothing, and the reason in `error`, for what does not exist, for a
/// broken alias and for a place that might not answer. Asks the disk on every call and writes nothing.
std::optional<AliasTarget> resolveAliasTarget(const QByteArray &path, Error *error);

/// The same for a path as text; a name that is not UTF-8 comes out with replacement characters.
std::optional<QString> resolveAlias(const QString &path, Error *error);

} // namespace platform
