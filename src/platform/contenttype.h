// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace platform {

/// True for a folder that is an application: its name ends in ".app" or it holds an executable file "AppRun".
bool isApplicationFolder(const QByteArray &path);

/// True for a file that stands for an application: a ".desktop" file of Type "Application" or an executable
/// AppImage. Scripts and other executable files are documents.
bool isApplicationFile(const QByteArray &path);

} // namespace platform
