// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <functional>
#include <memory>

namespace support {

/// Starts a program that dies with this process, however that ends. Null when it cannot be started.
std::unique_ptr<QProcess> startProcess(const QString &program, const QStringList &arguments,
                                       const QProcessEnvironment &environment);

/// Asks the process to end, and makes it end when it does not.
void endProcess(QProcess &process);

/// The standard output of a short-lived program; empty when it fails.
QByteArray outputOf(const QString &program, const QStringList &arguments,
                    const QProcessEnvironment &environment);

/// Waits until the condition holds, events running meanwhile; false when it still does not after half a
/// minute.
bool waitUntil(const std::function<bool()> &condition);

} // namespace support
