// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"
#include "platform/error.h"

#include <optional>

/// The settings file: where it lies, reading and writing it. Every problem ends as one diagnostic line.
namespace model {

/// Path of the folder that holds everything of ours in the documents folder. Only named, not made.
QString applicationFolder(const Config &config);

/// Path of the settings file. Makes the application folder when nothing stands at its path.
QString settingsFileURL(const Config &config);

/// The record in a settings file. No diagnostics: `error` says why there is none.
std::optional<SettingsData> readSettingsFile(const QString &path, platform::Error *error);

/// Fills the stored fields from the file, one change each. They stay as they are when it is missing or
/// unusable.
void loadSettings(Config &config);

/// Takes over a record that was read, one change a field.
void assignSettings(Config &config, const SettingsData &data);

/// Writes the stored fields to the file, after a safety copy of the same bytes (safetycopies.h).
void saveSettings(const Config &config);

/// Writes the first-run record, whatever the fields hold. A file that it replaces is kept among the safety
/// copies.
void writeDefaultSettings(const Config &config);

} // namespace model
