// SPDX-License-Identifier: MIT
#include "platform/livehints.h"

#include "platform/mounttable.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace platform {

namespace {

QByteArray linkOf(int file)
{
    return "/proc/self/fd/" + QByteArray::number(file);
}

} // namespace

LiveHints::LiveHints(const QByteArray &home)
    : m_watch(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    struct stat status;
    if (!MountTable().isNetwork(home) && ::stat(home.constData(), &status) == 0)
        m_device = status.st_dev;
}

LiveHints::~LiveHints()
{
    for (const Held &held : std::as_const(m_held))
        ::close(held.file);
    if (m_watch >= 0)
        ::close(m_watch);
}

void LiveHints::keep(const QByteArray &alias, const QByteArray &path, const struct stat &status)
{
    if (const auto held = m_held.find(alias); held != m_held.end()) {
        if (held->device == status.st_dev && held->inode == status.st_ino) {
            held->lastUse = ++m_uses;
            return;
        }
        drop(alias);
    }
    if (m_device != status.st_dev)
        return;
    const int file = ::open(path.constData(), O_PATH | O_CLOEXEC);
    if (file < 0)
        return;
    if (m_held.size() >= maxCount) {
        const auto oldest =
            std::min_element(m_held.cbegin(), m_held.cend(),
                             [](const Held &a, const Held &b) { return a.lastUse < b.lastUse; });
        drop(QByteArray(oldest.key()));
    }
    // The number of a file's links is among its attributes. A folder holds no room worth freeing, and would
    // tell of all that happens in it.
    const int watch = S_ISREG(status.st_mode) && m_watch >= 0
        ? ::inotify_add_watch(m_watch, linkOf(file).constData(), IN_ATTRIB)
        : -1;
    m_held.insert(alias, {file, watch, status.st_dev, status.st_ino, ++m_uses});
}

std::optional<QByteArray> LiveHints::presentPath(const Held &held) const
{
    char path[4096];
    const ssize_t length = ::readlink(linkOf(held.file).constData(), path, sizeof path);
    if (length <= 0 || size_t(length) >= sizeof path)
        return std::nullopt;
    return QByteArray(path, length);
}

std::optional<QByteArray> LiveHints::place(const QByteArray &alias)
{
    const auto held = m_held.find(alias);
    if (held == m_held.end())
        return std::nullopt;
    // A deleted file's path has words of the kernel's behind it, and might be another file's.
    const std::optional<QByteArray> path = presentPath(*held);
    struct stat status;
    if (path && ::stat(path->constData(), &status) == 0 && status.st_dev == held->device
        && status.st_ino == held->inode) {
        held->lastUse = ++m_uses;
        return path;
    }
    if (::fstat(held->file, &status) == 0 && status.st_nlink == 0)
        drop(alias);
    return std::nullopt;
}

void LiveHints::letGoDeleted()
{
    alignas(inotify_event) char events[4096];
    while (::read(m_watch, events, sizeof events) > 0) { }
    for (const QByteArray &alias : m_held.keys()) {
        const Held held = m_held.value(alias);
        struct stat status;
        if (held.watch < 0 || ::fstat(held.file, &status) != 0 || status.st_nlink > 0)
            continue;
        QByteArray path = presentPath(held).value_or(QByteArray());
        if (path.endsWith(" (deleted)"))
            path.chop(10);
        drop(alias);
        // Editors save by putting another file in the place of the old one.
        if (::stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode))
            keep(alias, path, status);
    }
}

void LiveHints::drop(const QByteArray &alias)
{
    const auto held = m_held.constFind(alias);
    if (held == m_held.cend())
        return;
    const int watch = held->watch;
    ::close(held->file);
    m_held.erase(held);
    // Two aliases of one file share a watch.
    const bool isShared = std::any_of(m_held.cbegin(), m_held.cend(),
                                      [watch](const Held &other) { return other.watch == watch; });
    if (watch >= 0 && !isShared)
        ::inotify_rm_watch(m_watch, watch);
}

} // namespace platform
