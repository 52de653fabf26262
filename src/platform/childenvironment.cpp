// SPDX-License-Identifier: MIT
#include "platform/childenvironment.h"

#include <mutex>

namespace platform {

namespace {

using Changes = QMap<QByteArray, std::optional<QByteArray>>;

struct Original
{
    std::mutex guard;
    Changes values = {
        {"DESKTOP_AUTOSTART_ID", std::nullopt},
        {"DESKTOP_STARTUP_ID", std::nullopt},
        {"INVOCATION_ID", std::nullopt},
        {"JOURNAL_STREAM", std::nullopt},
    };
};

// Never destroyed: a start that hangs on a dead mount may still be reading when the program ends.
Original &original()
{
    static auto *const values = new Original;
    return *values;
}

} // namespace

void setOwnVariable(const char *name, const QByteArray &value)
{
    const std::scoped_lock lock(original().guard);
    if (!original().values.contains(name)) {
        original().values.insert(
            name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
    }
    qputenv(name, value);
}

Changes changesForChildren()
{
    const std::scoped_lock lock(original().guard);
    return original().values;
}

} // namespace platform
