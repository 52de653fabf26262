// SPDX-License-Identifier: MIT
#pragma once

#include "platform/fileidentity.h"

#include <QByteArray>
#include <QList>

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>

namespace platform {

/// When a search ends without having come to its end.
struct SearchLimit
{
    std::chrono::steady_clock::time_point deadline;
    const std::atomic<bool> *cancelled = nullptr;

    static SearchLimit after(std::chrono::milliseconds time)
    {
        return {std::chrono::steady_clock::now() + time};
    }
    bool isReached() const;
};

/// One of the wanted files, and where it stands now.
struct SearchHit
{
    qsizetype index = 0; ///< in the list of the wanted
    QByteArray path;
};

/// The first of the folder's own entries that is one of the wanted files. Compares the inode numbers in the
/// folder and asks nothing more about an entry before its number fits.
std::optional<SearchHit> findInFolder(const QByteArray &folder, const QList<FileIdentity> &wanted,
                                      const SearchLimit &limit);

/// Looks for the wanted files in the folders and all below them, nearest ones first, and calls `hit` for each
/// until that returns false. Stays on each folder's file system, follows no links, and goes into no hidden
/// folders, caches and rubbish.
void findBelowFolders(const QList<QByteArray> &folders, const QList<FileIdentity> &wanted,
                      const SearchLimit &limit, const std::function<bool(const SearchHit &)> &hit);

/// True when the path lies in one of the user's Trash folders.
bool liesInTrash(const QByteArray &path);

} // namespace platform
