// SPDX-License-Identifier: MIT
#pragma once

#include "model/settingsdata.h"
#include "platform/error.h"

#include <optional>

namespace model {

/// The records in the text of a settings file: JSON in UTF-8, or in UTF-16 or UTF-32 behind their byte-order
/// mark. Every key of a record must be there with its exact type; unknown keys are ignored, and the first of
/// two equal keys counts. Anything else fails the whole text, and `error` names the key and the place.
std::optional<SettingsData> settingsFromJson(QByteArrayView bytes, platform::Error *error);

/// The text of a settings file: one member a line, two blanks a level, keys in declaration order, slashes
/// escaped.
QByteArray settingsToJson(const SettingsData &data);

} // namespace model
