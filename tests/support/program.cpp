// SPDX-License-Identifier: MIT
#include "support/program.h"

namespace support {

Program::Program(const Desktop &desktop, const QString &path, const QStringList &arguments)
    : m_desktop(desktop)
    , m_process(startProcess(path, arguments, desktop.environment()))
{
}

Program::~Program()
{
    if (m_process)
        endProcess(*m_process);
}

QStringList Program::lines()
{
    m_output += m_process->readAllStandardOutput();
    QStringList lines = QString::fromUtf8(m_output).split(u'\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QString Program::errors()
{
    m_errors += m_process->readAllStandardError();
    return QString::fromUtf8(m_errors);
}

int Program::waitForExit()
{
    if (!waitUntil([this] { return m_process->state() == QProcess::NotRunning; }))
        return -1;
    return m_process->exitStatus() == QProcess::NormalExit ? m_process->exitCode() : -1;
}

} // namespace support
