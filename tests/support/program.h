// SPDX-License-Identifier: MIT
#pragma once

#include "support/desktop.h"

namespace support {

/// A running program on a private desktop, ended with the object.
class Program
{
public:
    Program(const Desktop &desktop, const QString &path, const QStringList &arguments = {});
    ~Program();
    Q_DISABLE_COPY_MOVE(Program)

    qint64 processId() const { return m_process ? m_process->processId() : 0; }
    /// The lines written to standard output so far, a last one without its end included.
    QStringList lines();
    /// All that was written to standard error so far.
    QString errors();

    /// The program's mapped windows, as far as they tell whose they are.
    QList<Window> windows() const { return m_desktop.windows(searchTerms()); }
    Window waitForWindow() const { return m_desktop.waitForWindow(searchTerms()); }

    bool isRunning() const { return m_process->state() != QProcess::NotRunning; }
    void terminate() { m_process->terminate(); }
    /// The exit status once the program has ended by itself; -1 when it crashed or still runs.
    int waitForExit();

private:
    QStringList searchTerms() const { return {QStringLiteral("--pid"), QString::number(processId())}; }

    const Desktop &m_desktop;
    std::unique_ptr<QProcess> m_process;
    QByteArray m_output;
    QByteArray m_errors;
};

} // namespace support
