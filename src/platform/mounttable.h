// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

#include <chrono>

namespace platform {

/// Which paths lie where a plain look at a file can hang: below an automounter's folder, whose mere touch
/// mounts something, or on a network file system whose server has gone. Asked before such a look.
class MountTable
{
public:
    /// The kernel's table, read again whenever it has changed.
    MountTable();
    /// A table of its own, in the words of /proc/self/mountinfo.
    explicit MountTable(const QByteArray &text);
    ~MountTable();
    Q_DISABLE_COPY_MOVE(MountTable)

    /// True when nothing may be asked about the path now. Symbolic links are followed, step by step. A
    /// network file system is tried on a thread of its own and given a few milliseconds to answer.
    bool mayHang(const QByteArray &path);

    bool isNetwork(const QByteArray &path) const { return mountOf(path).kind != Kind::Local; }
    /// The folders on which something is mounted.
    QList<QByteArray> places() const;

private:
    enum class Kind { Local, Network, Automount };
    struct Mount
    {
        QByteArray place;
        Kind kind = Kind::Local;
    };
    using Clock = std::chrono::steady_clock;

    static Kind kindOf(const QByteArray &type);
    void refresh();
    void read(const QByteArray &text);
    const Mount &mountOf(const QByteArray &path) const;
    bool answers(const Mount &mount, const QByteArray &path);

    int m_file = -1;
    QList<Mount> m_mounts = {{"/", Kind::Local}}; ///< also when there is no table to read
    bool m_allLocal = true;
    QHash<QByteArray, Clock::time_point> m_answered; ///< when a network mount last answered
};

} // namespace platform
