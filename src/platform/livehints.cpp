// SPDX-License-Identifier: MIT
#include "platform/livehints.h"

#include "platform/mounttable.h"

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

namespace platform {

LiveHints::LiveHints(const QByteArray &home)
{
    struct stat status;
    if (!MountTable().isNetwork(home) && ::stat(home.constData(), &status) == 0)
        m_device = status.st_dev;
}

LiveHints::~LiveHints()
{
    for (const Held &held : std::as_const(m_held))
        ::close(held.file);
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
    m_held.insert(alias, {file, status.st_dev, status.st_ino, ++m_uses});
}

std::optional<QByteArray> LiveHints::place(const QByteArray &alias)
{
    const auto held = m_held.find(alias);
    if (held == m_held.end())
        return std::nullopt;
    char path[4096];
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(held->file);
    const ssize_t length = ::readlink(link.constData(), path, sizeof path);
    struct stat status;
    if (length > 0 && size_t(length) < sizeof path) {
        // A deleted file's name has words of the kernel's behind it, and might be another file's name.
        QByteArray place(path, length);
        if (::stat(place.constData(), &status) == 0 && status.st_dev == held->device
            && status.st_ino == held->inode) {
            held->lastUse = ++m_uses;
            return place;
        }
    }
    if (::fstat(held->file, &status) == 0 && status.st_nlink == 0)
        drop(alias); // or the deleted file's room on the disk would not come free
    return std::nullopt;
}

void LiveHints::drop(const QByteArray &alias)
{
    if (const auto held = m_held.constFind(alias); held != m_held.cend()) {
        ::close(held->file);
        m_held.erase(held);
    }
}

} // namespace platform
