// SPDX-License-Identifier: MIT
#include "support/process.h"

#include <QTest>

#include <csignal>

#include <sys/prctl.h>

namespace support {

std::unique_ptr<QProcess> startProcess(const QString &program, const QStringList &arguments,
                                       const QProcessEnvironment &environment)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process->start(program, arguments);
    if (!process->waitForStarted())
        return nullptr;
    return process;
}

void endProcess(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(10000)) {
        process.kill();
        process.waitForFinished();
    }
}

QByteArray outputOf(const QString &program, const QStringList &arguments,
                    const QProcessEnvironment &environment)
{
    const std::unique_ptr<QProcess> process = startProcess(program, arguments, environment);
    if (!process || !process->waitForFinished() || process->exitCode() != 0)
        return {};
    return process->readAllStandardOutput();
}

bool waitUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, 30000);
}

} // namespace support
