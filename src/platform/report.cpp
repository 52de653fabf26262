// SPDX-License-Identifier: MIT
#include "platform/report.h"

#include <cstdio>

namespace platform {

void report(const QString &line)
{
    QByteArray bytes = line.toUtf8();
    for (char &byte : bytes) {
        if (byte == '\n' || byte == '\r')
            byte = ' ';
    }
    bytes += '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace platform
