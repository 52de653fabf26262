// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace model {

/// The text with a zero of the same length for every number outside strings. The parser refuses numbers that
/// no double can hold, and no number means anything to us.
QByteArray withoutNumbers(QByteArrayView json);

} // namespace model
