// SPDX-License-Identifier: MIT
#include "support/privatedesktop.h"

#include "platform/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <vector>

#include <fcntl.h>
#include <spawn.h>
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
    const QByteArray record = platform::readWholeFile(path, nullptr).value_or(QByteArray());
    for (const QByteArray &field : record.split('\0')) {
        const QString text = QString::fromUtf8(field);
        const QString key = text.section(u'=', 0, 0);
        const QString value = text.section(u'=', 1);
        if (key == QLatin1String("argument"))
            launch.arguments << value;
        else if (key == QLatin1String("folder"))
            launch.folder = value;
        else if (key == QLatin1String("output"))
            launch.output = value;
        else if (key == QLatin1String("ownSession"))
            launch.ownSession = value == QLatin1String("yes");
        else if (key == QLatin1String("variable"))
            launch.variables.insert(value.section(u'=', 0, 0), value.section(u'=', 1));
    }
    if (!launch.arguments.isEmpty())
        launch.program = launch.arguments.takeFirst().section(u'/', -1);
    return launch;
}

} // namespace

PrivateDesktop::PrivateDesktop()
    : m_environment(QProcessEnvironment::systemEnvironment())
{
    const std::pair<const char *, const char *> folders[] = {{"HOME", "home"},
                                                             {"XDG_DATA_HOME", "data"},
                                                             {"XDG_CONFIG_HOME", "config"},
                                                             {"PATH", "bin"},
                                                             {"XDG_CONFIG_DIRS", "nowhere"},
                                                             {"PW_RECORDS", "records"},
                                                             {"XDG_DATA_DIRS", "shared"}};
    for (const auto &[name, folder] : folders) {
        QDir(m_folder.path()).mkpath(QString::fromLatin1(folder));
        setVariable(QString::fromLatin1(name), path(QString::fromLatin1(folder)));
    }
    // Content types need the system's table of them, but its programs stay out.
    QFile::link(QStringLiteral("/usr/share/mime"), path(QStringLiteral("shared/mime")));
    setVariable(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent"));
    m_environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP"));
}

QString PrivateDesktop::write(const QString &relative, const QByteArray &content) const
{
    const QString file = path(relative);
    if (!platform::makeFolder(QFileInfo(file).path(), nullptr)
        || !platform::writeInPlace(file, content, nullptr))
        qFatal("%s could not be written", qPrintable(relative));
    return file;
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
pid_t PrivateDesktop::start(const QStringList &arguments) const
{
    QByteArrayList texts = {QFile::encodeName(QCoreApplication::applicationFilePath())};
    for (const QString &argument : arguments)
        texts << argument.toUtf8();
    QByteArrayList variables;
    for (const QString &variable : m_environment.toStringList())
        variables << variable.toUtf8();
    const auto pointers = [](QByteArrayList &list) {
        std::vector<char *> result;
        for (QByteArray &text : list)
            result.push_back(text.data());
        result.push_back(nullptr);
        return result;
    };
    posix_spawn_file_actions_t streams;
    ::posix_spawn_file_actions_init(&streams);
    const QByteArray input = QFile::encodeName(path(QStringLiteral("input")));
    const QByteArray output = QFile::encodeName(path(QStringLiteral("output")));
    ::posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, input.constData(), O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&streams, STDOUT_FILENO, output.constData(),
                                       O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t process = -1;
    if (::posix_spawn(&process, texts.first().constData(), &streams, nullptr, pointers(texts).data(),
                      pointers(variables).data())
        != 0)
        qFatal("%s could not be started", texts.first().constData());
    ::posix_spawn_file_actions_destroy(&streams);
    return process;
}

PrivateDesktop::Outcome PrivateDesktop::run(const QStringList &arguments, const QByteArray &input) const
{
    // What the process leaves behind becomes a child of ours and can be waited for.
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    write(QStringLiteral("input"), input);
    Outcome outcome;
    int status = 0;
    const pid_t process = start(arguments);
    if (::waitpid(process, &status, 0) == process && WIFEXITED(status))
        outcome.exitCode = WEXITSTATUS(status);
    while (::waitpid(-1, nullptr, 0) > 0) { }
    outcome.output = platform::readWholeFile(path(QStringLiteral("output")), nullptr).value_or(QByteArray());
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
