// SPDX-License-Identifier: MIT
#include "platform/mounttable.h"

#include "platform/aliasfile.h"
#include "platform/background.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 8ms; // that a network file system gets, out of the 20 that one link may take
constexpr auto trust = 1s; // how long its answer stands for the next questions
constexpr int maxLinks = 40; // symbolic links in one path, as in the kernel

constexpr std::array networkTypes = {"nfs", "nfs4", "cifs",  "smb3",      "smbfs",  "ncpfs", "afs",  "ceph",
                                     "9p",  "coda", "davfs", "glusterfs", "lustre", "ocfs2", "gfs2", "fuse"};

QByteArray readAll(int file)
{
    QByteArray text;
    char part[16384];
    ::lseek(file, 0, SEEK_SET);
    for (ssize_t length; (length = ::read(file, part, sizeof part)) > 0;)
        text.append(part, length);
    return text;
}

/// Blanks, tabs, line ends and backslashes stand as "\040" and the like.
QByteArray unescaped(const QByteArray &text)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == '\\' && i + 3 < text.size()) {
            bytes += char(text.mid(i + 1, 3).toInt(nullptr, 8));
            i += 3;
        } else {
            bytes += text.at(i);
        }
    }
    return bytes;
}

bool liesBelow(const QByteArray &path, const QByteArray &folder)
{
    return folder == "/" || path == folder || (path.startsWith(folder) && path.at(folder.size()) == '/');
}

/// Shared with a thread that may hang for hours: it outlives whoever asks.
struct Trial
{
    std::mutex mutex;
    std::condition_variable ended;
    bool done = false;
};

} // namespace

MountTable::MountTable()
    : m_file(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))
{
    if (m_file >= 0)
        read(readAll(m_file));
}

MountTable::MountTable(const QByteArray &text)
{
    read(text);
}

MountTable::~MountTable()
{
    if (m_file >= 0)
        ::close(m_file);
}

MountTable::Kind MountTable::kindOf(const QByteArray &type)
{
    if (type == "autofs")
        return Kind::Automount;
    const bool network = type.startsWith("fuse.")
        || std::any_of(networkTypes.begin(), networkTypes.end(),
                       [&type](const char *name) { return type == name; });
    return network ? Kind::Network : Kind::Local;
}

void MountTable::read(const QByteArray &text)
{
    m_mounts = {{"/", Kind::Local}};
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-");
        if (dash < 5 || dash + 1 >= fields.size())
            continue;
        m_mounts.append({unescaped(fields.at(4)), kindOf(fields.at(dash + 1))});
    }
    m_allLocal = std::all_of(m_mounts.cbegin(), m_mounts.cend(),
                             [](const Mount &mount) { return mount.kind == Kind::Local; });
}

void MountTable::refresh()
{
    // The kernel raises an exceptional condition once after each change: cheaper than any look at a file.
    pollfd table = {m_file, POLLPRI, 0};
    if (m_file >= 0 && ::poll(&table, 1, 0) > 0)
        read(readAll(m_file));
}

const MountTable::Mount &MountTable::mountOf(const QByteArray &path) const
{
    // Later mounts hide earlier ones on the same folder.
    const Mount *best = &m_mounts.constFirst();
    for (const Mount &mount : m_mounts) {
        if (mount.place.size() >= best->place.size() && liesBelow(path, mount.place))
            best = &mount;
    }
    return *best;
}

bool MountTable::answers(const Mount &mount, const QByteArray &path)
{
    // One trial for each mount at a time: while one hangs, so would the next.
    static std::mutex mutex;
    static QHash<QByteArray, std::shared_ptr<Trial>> running;
    const Clock::time_point now = Clock::now();
    if (const auto last = m_answered.constFind(mount.place); last != m_answered.cend() && now - *last < trust)
        return true;

    auto trial = std::make_shared<Trial>();
    {
        const std::lock_guard lock(mutex);
        if (const auto old = running.value(mount.place)) {
            const std::lock_guard oldLock(old->mutex);
            if (!old->done)
                return false;
        }
        running.insert(mount.place, trial);
    }
    const bool isStarted = startThread([trial, path = QByteArray(path.constData(), path.size())] {
        struct stat status;
        ::stat(path.constData(), &status);
        const std::lock_guard lock(trial->mutex);
        trial->done = true;
        trial->ended.notify_all();
    });
    std::unique_lock lock(trial->mutex);
    trial->done |= !isStarted;
    if (!isStarted || !trial->ended.wait_for(lock, patience, [&trial] { return trial->done; }))
        return false;
    m_answered.insert(mount.place, now);
    return true;
}

QList<QByteArray> MountTable::places() const
{
    QList<QByteArray> places;
    for (const Mount &mount : m_mounts)
        places.append(mount.place);
    return places;
}

bool MountTable::mayHang(const QByteArray &path)
{
    refresh();
    if (m_allLocal)
        return false;
    QByteArray current = "/";
    QList<QByteArray> rest = path.split('/');
    for (int links = 0; !rest.isEmpty();) {
        const QByteArray name = rest.takeFirst();
        if (name.isEmpty() || name == ".")
            continue;
        if (name == "..") {
            current = parentPath(current);
            continue;
        }
        const QByteArray next = (current == "/" ? QByteArray() : current) + '/' + name;
        const Mount &mount = mountOf(next);
        if (mount.kind == Kind::Automount || (mount.kind == Kind::Network && !answers(mount, next)))
            return true;
        char link[4096];
        const ssize_t length = ::readlink(next.constData(), link, sizeof link);
        if (length <= 0) {
            current = next;
            continue;
        }
        if (++links > maxLinks)
            return false;
        const QByteArray to(link, length);
        if (to.startsWith('/'))
            current = "/";
        rest = to.split('/') + rest;
    }
    return false;
}

} // namespace platform
