// SPDX-License-Identifier: MIT
#pragma once

#include "support/desktop.h"

namespace support {

/// A running program on a private desktop, ended with the object.
class Program
{
public:
    Program(const Desktop &desktop, const QString &path, const QStringList &arguments = {})
        : m_desktop(desktop)
        , m_process(startProcess(path, arguments, desktop.environment()))
    {
    }
    ~Program()
    {
        if (m_process)
            endProcess(*m_process);
    }
    Q_DISABLE_COPY_MOVE(Program)

    qint64 processId() const { return m_process ? m_process->processId() : 0; }
    /// The lines written to standard output so far, a last one without its end included.
    QStringList lines()
    {
        m_output += m_process->readAllStandardOutput();
        return QString::fromUtf8(m_output).split(u'\n', Qt::SkipEmptyParts);
    }
    /// What was written to standard error since the last call.
    QString errors() { return QString::fromUtf8(m_process->readAllStandardError()); }

    /// The program's mapped windows, as far as they tell whose they are.
    QList<Window> windows() const { return m_desktop.windows(searchTerms()); }
    Window waitForWindow() const { return m_desktop.waitForWindow(searchTerms()); }

    bool isRunning() const { return m_process->state() != QProcess::NotRunning; }
    void terminate() { m_process->terminate(); }
    /// The exit status once the program has ended by itself; -1 when it crashed or still runs.
    int waitForExit()
    {
        const bool ends = waitUntil([this] { return !isRunning(); });
        return ends && m_process->exitStatus() == QProcess::NormalExit ? m_process->exitCode() : -1;
    }

private:
    QStringList searchTerms() const { return {QStringLiteral("--pid"), QString::number(processId())}; }

    const Desktop &m_desktop;
    std::unique_ptr<QProcess> m_process;
    QByteArray m_output;
};

} // namespace support
