// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstring>

#include <sys/inotify.h>
#include <unistd.h>

/// Counts how often the settings file is written.
class SaveWatcher
{
public:
    /// `folder`: the application folder, which must exist.
    explicit SaveWatcher(const QString &folder)
        : m_queue(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        // The other events keep the kernel from folding two writes into one.
        inotify_add_watch(m_queue, QFile::encodeName(folder).constData(),
                          IN_OPEN | IN_MODIFY | IN_CLOSE_WRITE);
    }
    ~SaveWatcher() { ::close(m_queue); }
    Q_DISABLE_COPY_MOVE(SaveWatcher)

    /// Since the last call.
    int saves()
    {
        int count = 0;
        alignas(inotify_event) char buffer[16384];
        ssize_t size;
        while ((size = ::read(m_queue, buffer, sizeof buffer)) > 0) {
            for (const char *at = buffer; at < buffer + size;) {
                inotify_event event;
                std::memcpy(&event, at, sizeof event);
                if (event.mask & IN_CLOSE_WRITE
                    && std::strcmp(at + sizeof event, "pondWicket-settings.json") == 0)
                    ++count;
                at += sizeof event + event.len;
            }
        }
        return count;
    }

private:
    int m_queue;
};
