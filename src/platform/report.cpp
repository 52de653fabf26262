// SPDX-License-Identifier: MIT
#include "platform/report.h"

#include <atomic>
#include <cstdio>

#include <poll.h>
#include <unistd.h>

namespace platform {

namespace {

/// A reader that has stopped is waited for once, and then until it reads on there is no room.
bool hasRoom()
{
    constexpr int patience = 100; // ms
    static std::atomic<bool> isStuck;
    pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    isStuck = ::poll(&output, 1, isStuck ? 0 : patience) == 0;
    return !isStuck;
}

} // namespace

void report(const QString &line)
{
    QByteArray bytes = line.toUtf8();
    for (char &byte : bytes) {
        if (byte == '\n' || byte == '\r')
            byte = ' ';
    }
    bytes += '\n';
    if (!hasRoom())
        return;
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace platform
