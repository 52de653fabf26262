// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>

/// Copies of the settings outside the application folder, for the day on which a crash or a full disk leaves
/// the settings file in pieces. Nothing is ever restored by itself. A copy that fails says so on standard
/// error only.
namespace model {

/// Path of the bytes of the newest save. Whatever happens while saving, either this file or the settings file
/// is whole.
QString lastGoodPath(const QString &stateDirectory);

/// To be called before each save with the bytes about to be written.
void keepLastGood(const QString &stateDirectory, QByteArrayView bytes);

/// To be called before first-run content replaces the file at `path`: keeps that file and what the newest
/// save wrote, each under a dated name, and the newest ten of each kind.
void keepReplaced(const QString &stateDirectory, const QString &path);

} // namespace model
