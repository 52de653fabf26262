// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace model {

/// A text as UTF-8 without byte-order mark: of UTF-16 and UTF-32, behind their mark, decoded, of everything
/// else as it is. Nothing when it does not decode.
std::optional<QByteArray> narrowed(QByteArrayView text);

/// Line and column of an offset in UTF-8, both from 1, columns in characters.
QString placeOf(QByteArrayView text, qsizetype offset);

} // namespace model
