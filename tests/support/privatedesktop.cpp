// SPDX-License-Identifier: MIT
#include "support/privatedesktop.h"

#include "support/files.h"

#include <QCoreApplication>
#include <QFile>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

QString recorder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/recorder");
}

PrivateDesktop::Launch readLaunch(const QString &path)
{
    PrivateDesktop::Launch launch;
    for (const QByteArray &field : bytesOf(path).split('\0')) {
        const QString text = QString::fromUtf8(field), key = text.section(u'=', 0, 0);
        if (key == u"argument")
            launch.arguments << text.section(u'=', 1);
        else
            launch.facts.insert(key, text.section(u'=', 1));
    }
    if (!launch.arguments.isEmpty())
        launch.program = launch.arguments.takeFirst().section(u'/', -1);
    return launch;
}

} // namespace

PrivateDesktop::PrivateDesktop()
    : m_environment(QProcessEnvironment::systemEnvironment())
{
    for (const auto &[name, folder] :
         {std::pair("HOME", u"home/"_qs), std::pair("XDG_DATA_HOME", u"data/"_qs),
          std::pair("XDG_CONFIG_HOME", u"config/"_qs), std::pair("PATH", u"bin/"_qs),
          std::pair("XDG_CONFIG_DIRS", u"nowhere/"_qs), std::pair("PW_RECORDS", u"records/"_qs),
          std::pair("XDG_DATA_DIRS", u"shared/"_qs)})
        setVariable(QLatin1String(name), write(folder, {}).chopped(1));
    // Content types need the system's table of them, but its programs stay out.
    QFile::link(QStringLiteral("/usr/share/mime"), path(QStringLiteral("shared/mime")));
    setVariable(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent"));
    m_environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP"));
}

QByteArray PrivateDesktop::desktopEntry(const QString &arguments)
{
    return "[Desktop Entry]\nType=Application\nName=Recorder\nExec=\"" + QFile::encodeName(recorder()) + "\" "
        + arguments.toUtf8() + '\n';
}

void PrivateDesktop::addHandler(const QString &id, const QStringList &types, const QString &arguments)
{
    write(QStringLiteral("data/applications/%1.desktop").arg(id),
          desktopEntry(id + u' ' + arguments) + "MimeType=" + types.join(u';').toUtf8() + ";\n");
    for (const QString &type : types)
        m_defaults << QStringLiteral("%1=%2.desktop").arg(type, id);
    write(QStringLiteral("config/mimeapps.list"),
          "[Default Applications]\n" + m_defaults.join(u'\n').toUtf8() + '\n');
}

QString PrivateDesktop::addProgram(const QString &name) const
{
    const QString program = path(QStringLiteral("bin/") + name);
    QFile::link(recorder(), program);
    return program;
}

// Not by QProcess: the way in which it makes a process is too new for the thread sanitizer.
pid_t PrivateDesktop::start(const QString &task) const
{
    const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    const pid_t process = ::fork();
    if (process == 0) {
        ::dup2(::open(qPrintable(path(u"input"_qs)), O_RDONLY), STDIN_FILENO);
        ::dup2(::open(qPrintable(path(u"output"_qs)), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        ::clearenv();
        for (const QString &name : m_environment.keys())
            qputenv(qPrintable(name), m_environment.value(name).toUtf8());
        ::execl(program.constData(), program.constData(), qPrintable(task), nullptr);
        ::_exit(127);
    }
    return process;
}

PrivateDesktop::Outcome PrivateDesktop::run(const QString &task, const QByteArray &input) const
{
    // What the process leaves behind becomes a child of ours and can be waited for.
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    write(QStringLiteral("input"), input);
    Outcome outcome;
    int status = 0;
    const pid_t process = start(task);
    if (::waitpid(process, &status, 0) == process && WIFEXITED(status))
        outcome.exitCode = WEXITSTATUS(status);
    while (::waitpid(-1, nullptr, 0) > 0) { }
    outcome.output = bytesOf(path(QStringLiteral("output")));
    QDir records(path(QStringLiteral("records")));
    for (const QString &name : records.entryList(QDir::Files)) {
        outcome.launches << readLaunch(records.filePath(name));
        records.remove(name);
    }
    return outcome;
}

QByteArray readInput()
{
    QFile input;
    return input.open(stdin, QIODevice::ReadOnly) ? input.readAll() : QByteArray();
}

} // namespace support
