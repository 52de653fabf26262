// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMap>

#include <optional>

namespace platform {

/// Sets a variable of our own environment that programs started by us must not inherit: they get it as it
/// was. Only from the interface thread, best before any other thread runs.
void setOwnVariable(const char *name, const QByteArray &value);

/// What differs between our environment and that of a program started by us: a value, or nothing for a
/// variable that is not to be there. Besides our own variables these are the ones that speak of our start and
/// of nobody else's.
QMap<QByteArray, std::optional<QByteArray>> changesForChildren();

} // namespace platform
