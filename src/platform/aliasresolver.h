// SPDX-License-Identifier: MIT
#pragma once

#include "platform/aliasfile.h"
#include "platform/aliassearch.h"
#include "platform/foldersearch.h"
#include "platform/livehints.h"
#include "platform/mounttable.h"

#include <QHash>
#include <QObject>
#include <QString>

namespace platform {

/// Where a path leads.
struct AliasTarget
{
    QByteArray path; ///< bytes as the file system has them: a name need not be UTF-8
    bool isFolder = false;
};

/// Follows alias files to where their targets stand now. In this order: the recorded place, whatever file of
/// the same kind stands there now (editors save by replacing); where the held target has gone; the recorded
/// folder and those above it, by identity; the place relative to the alias file; and, on a worker, the whole
/// of the user's folders. What lies in the Trash is gone, and a name alone is never enough.
class AliasResolver : public QObject
{
    Q_OBJECT

public:
    struct Places
    {
        QByteArray home;
        QList<QByteArray> searched; ///< folders for the worker, first to last
    };
    explicit AliasResolver(const Places &places,
                           std::unique_ptr<MountTable> mounts = std::make_unique<MountTable>());

    std::optional<AliasTarget> resolve(const QByteArray &path, Error *error);
    void refresh(const QByteArray &path);
    void hold(const QByteArray &path);
    void waitForSearch() { m_search.wait(); }

Q_SIGNALS:
    /// The worker has found a lost target: an alias that was broken may lead somewhere now.
    void targetFound();

private:
    struct Place
    {
        QByteArray path;
        struct stat status = {};
    };
    enum class Content { Other, Broken, Alias };
    struct Entry
    {
        FileStamp stamp;
        Content content = Content::Other;
        AliasRecord record;
        QByteArray key;
        Error error;
    };

    std::optional<Place> look(const QByteArray &path, Error *error);
    const Entry &read(const Place &place);
    std::optional<Place> follow(const Entry &entry, const QByteArray &aliasFile);
    std::optional<Place> accept(const std::optional<QByteArray> &path, const Entry &entry);
    std::optional<Place> recordedPlace(const Entry &entry);
    std::optional<QByteArray> searchedPlace(const Entry &entry);
    std::optional<QByteArray> nearbyPlace(const Entry &entry, const SearchLimit &limit,
                                          QList<QByteArray> &standing);

    LiveHints m_hints;
    std::unique_ptr<MountTable> m_mounts;
    QHash<QByteArray, Entry> m_entries; ///< what files held when last read, by path
    QHash<QByteArray, FileStamp> m_misses; ///< folders gone through in vain, by target and folder
    AliasSearch m_search; ///< last: its worker calls back until it is gone
};

/// The program's one resolver. Made at first use, for the user's own folders.
AliasResolver &aliasResolver();

/// Where the path leads now: an alias file to its target, through alias files that lead to alias files;
/// anything else that exists to itself. Nothing, and the reason in `error`, for what does not exist, for a
/// broken alias and for a place that might not answer. Asks the disk on every call and writes nothing.
std::optional<AliasTarget> resolveAliasTarget(const QByteArray &path, Error *error);

/// The same for a path as text; a name that is not UTF-8 comes out with replacement characters.
std::optional<QString> resolveAlias(const QString &path, Error *error);

/// To be called after a link was opened: rewrites the alias file when its target stands elsewhere than
/// recorded or was replaced. Silent when it cannot be written; it will be found the same way again.
void refreshAlias(const QByteArray &path);

/// Holds the targets of alias files, so that they are found after any move from now on.
void holdTargets(const QList<QByteArray> &paths);

} // namespace platform
