// SPDX-License-Identifier: MIT
#pragma once

#include "platform/error.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace platform {

/// True when anything stands at the path, links followed; a dangling link counts as nothing.
bool itemExists(const QString &path);

/// The whole content of a regular file. Opened without blocking; anything but a regular file (a folder, a
/// pipe, a device) is an error, as is one larger than `maxSize` bytes when that is not negative.
std::optional<QByteArray> readWholeFile(const QString &path, Error *error, qint64 maxSize = -1);

/// The text of UTF-8 bytes, a leading byte-order mark skipped; nothing when they are not valid UTF-8
/// (overlong forms, surrogates and values past U+10FFFF included).
std::optional<QString> decodeUtf8(QByteArrayView bytes, Error *error);

/// Writes the file where it stands: open, truncate, write. A symbolic link stays one, nothing appears beside
/// it. Anything but a regular file at the path is an error and is left as it is.
bool writeInPlace(const QString &path, QByteArrayView bytes, Error *error);

/// Writes a new file in the same folder and moves it over the target, so that readers see the old or the new
/// bytes, never a part, even when the process is killed. A symbolic link's target is replaced, not the link.
/// An existing file keeps its permissions; a new one gets `mode` less the process's umask.
bool writeAtomically(const QString &path, QByteArrayView bytes, Error *error, unsigned mode = 0666);

/// Removes from the folder what processes that were killed in `writeAtomically` have left there. Younger
/// files than `age` seconds may still be written by another process.
void removeLeftovers(const QString &folder, qint64 age = 3600);

/// Returns when the file's content will survive a loss of power. Takes as long as the disk does.
void flushToDisk(const QString &path);

/// As writeAtomically for a file that is written again and again: the bytes go over those of the file at
/// `spare`, which then changes places with the one at `path`, so that no room on the disk is given back and
/// asked for anew. Both lie in one folder, readable by the user only; `spare` keeps the content before.
bool writeBySwapping(const QString &path, const QString &spare, QByteArrayView bytes, Error *error);

/// Copies a regular file of any size to a path at which nothing stands yet, readable by the user only.
bool copyFile(const QString &source, const QString &target, Error *error);

/// Makes the folder with its parents. True when it stands there afterwards, links followed.
bool makeFolder(const QString &path, Error *error);

/// The text between quotation marks in messages: the last component of the path.
QString displayName(const QString &path);

} // namespace platform
