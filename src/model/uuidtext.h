// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUuid>

#include <array>
#include <optional>

namespace model {

constexpr qsizetype uuidLength = 36;
using UuidText = std::array<char, uuidLength>;

/// The canonical text of a UUID: 36 characters, upper case, no braces.
UuidText uuidBytes(const QUuid &id);
QString uuidText(const QUuid &id);

/// The UUID of exactly 36 characters, 8-4-4-4-12 hexadecimal digits of either case. QUuid::fromString alone
/// would also take braces and text that follows.
std::optional<QUuid> uuidFromText(QByteArrayView text);

} // namespace model
