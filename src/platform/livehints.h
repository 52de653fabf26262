// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>

#include <optional>

#include <sys/stat.h>

namespace platform {

/// Holds on to the targets of aliases while the program runs, so that the kernel tells where each stands
/// after any move. Only on the home folder's file system, and not when that is a network's: a held file keeps
/// its file system from being unmounted.
class LiveHints
{
public:
    explicit LiveHints(const QByteArray &home);
    ~LiveHints();
    Q_DISABLE_COPY_MOVE(LiveHints)

    /// Holds what stands at `path`, whose stat is `status`, under the name of an alias file. Cheap when it is
    /// held already. The one used longest ago is let go when there are too many.
    void keep(const QByteArray &alias, const QByteArray &path, const struct stat &status);
    /// Where the held target stands now; nothing when none is held or it has been deleted.
    std::optional<QByteArray> place(const QByteArray &alias);
    void drop(const QByteArray &alias);

    /// Becomes readable when something may have been deleted; then `letGoDeleted` is to be called. -1 for
    /// never.
    int watch() const { return m_watch; }
    void letGoDeleted();

    qsizetype count() const { return m_held.size(); }
    static constexpr qsizetype maxCount = 512;

private:
    struct Held
    {
        int file = -1;
        int watch = -1;
        dev_t device = 0;
        ino_t inode = 0;
        quint64 lastUse = 0;
    };

    std::optional<QByteArray> presentPath(const Held &held) const;

    std::optional<dev_t> m_device; ///< none: nothing is held
    int m_watch = -1;
    QHash<QByteArray, Held> m_held;
    quint64 m_uses = 0;
};

} // namespace platform
