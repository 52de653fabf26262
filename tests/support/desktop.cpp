// SPDX-License-Identifier: MIT
#include "support/desktop.h"

#include "support/files.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace support {

namespace {

QProcessEnvironment privateEnvironment(const QDir &root)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Whatever a real session left behind would lead programs out of the private desktop.
    for (const QString &name : environment.keys()) {
        for (const char *prefix : {"XDG_", "QT_", "DBUS_", "WAYLAND_", "GTK_", "DESKTOP_", "XAUTHORITY"}) {
            if (name.startsWith(QLatin1String(prefix)))
                environment.remove(name);
        }
    }
    for (const auto &[name, folder] :
         {std::pair("HOME", "home/"), std::pair("XDG_CONFIG_HOME", "home/.config/"),
          std::pair("XDG_DATA_HOME", "home/.local/share/"), std::pair("XDG_STATE_HOME", "home/.local/state/"),
          std::pair("XDG_CACHE_HOME", "home/.cache/"), std::pair("XDG_RUNTIME_DIR", "run/")})
        environment.insert(QLatin1String(name), make(root.filePath(QLatin1String(folder))).chopped(1));
    QFile::setPermissions(root.filePath(u"run"_qs), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    environment.insert(u"LC_ALL"_qs, u"C.UTF-8"_qs);
    environment.insert(u"QT_FORCE_STDERR_LOGGING"_qs, u"1"_qs);
    return environment;
}

QRect geometryOf(const Desktop &desktop, const QString &id)
{
    const QString text = QString::fromUtf8(desktop.run(u"xwininfo"_qs, {u"-id"_qs, id}));
    const auto number = [&text](const QString &label) {
        return QRegularExpression(label + u":\\s+(-?\\d+)"_qs).match(text).captured(1).toInt();
    };
    return {number(u"Absolute upper-left X"_qs), number(u"Absolute upper-left Y"_qs), number(u"Width"_qs),
            number(u"Height"_qs)};
}

} // namespace

Desktop::Desktop(const DesktopOptions &options)
    : m_environment(privateEnvironment(QDir(m_root.path())))
{
    QByteArray display;
    if (!start(u"X server"_qs, u"Xvfb"_qs,
               u"-displayfd 1 -screen 0 %1x%2x24 -nolisten tcp -noreset"_qs.arg(options.screen.width())
                   .arg(options.screen.height())
                   .split(u' '),
               &display))
        return;
    m_environment.insert(u"DISPLAY"_qs, u':' + QString::fromLatin1(display));

    QByteArray address;
    if (!start(u"session bus"_qs, u"dbus-daemon"_qs, u"--session --nofork --print-address=1"_qs.split(u' '),
               &address))
        return;
    m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_qs, QString::fromLatin1(address));

    if (!options.windowManager.isEmpty() && !startManager(options.windowManager))
        return;
    // picom names its own window once it owns the screen's compositing selection.
    if (options.compositor
        && start(u"compositor"_qs, u"picom"_qs, u"--backend xrender --config /dev/null"_qs.split(u' '))
        && waitForWindow({u"--name"_qs, u"^picom$"_qs}).isNull())
        m_problem = u"picom does not compose the screen"_qs;
}

Desktop::~Desktop()
{
    if (m_manager)
        endProcess(*m_manager);
    std::for_each(m_processes.rbegin(), m_processes.rend(),
                  [](const auto &process) { endProcess(*process); });
}

/// Starts a part of the desktop; with `firstLine` it has come up when it has written that.
bool Desktop::start(const QString &what, const QString &program, const QStringList &arguments,
                    QByteArray *firstLine)
{
    std::unique_ptr<QProcess> process = startProcess(program, arguments, m_environment);
    const bool up = process && (!firstLine || waitUntil([&] { return process->canReadLine(); }));
    if (!up)
        m_problem = what + u" did not start"_qs;
    else if (firstLine)
        *firstLine = process->readLine().trimmed();
    if (process)
        m_processes.push_back(std::move(process));
    return up;
}

bool Desktop::startManager(const QString &command)
{
    QStringList arguments = QProcess::splitCommand(command);
    const QString program = arguments.takeFirst();
    m_manager = startProcess(program, arguments, m_environment);
    // A window that is mapped while a manager still starts is never shown: wait until it does what it is
    // asked.
    if (!m_manager || !waitUntil([this] {
            xdotool({u"set_num_desktops"_qs, u"3"_qs});
            return xdotool({u"get_num_desktops"_qs}).trimmed() == "3";
        }))
        m_problem = program + u" does not manage the screen"_qs;
    return isUp();
}

void Desktop::endManager()
{
    // Its desktops would be there still, and the next manager seem to be up.
    xdotool({u"set_num_desktops"_qs, u"2"_qs});
    waitUntil([this] { return xdotool({u"get_num_desktops"_qs}).trimmed() == "2"; });
    endProcess(*m_manager);
}

QList<Window> Desktop::windows(const QStringList &terms) const
{
    const QByteArray ids = xdotool(QStringList{u"search"_qs, u"--onlyvisible"_qs} + terms);
    QList<Window> windows;
    for (const QByteArray &id : ids.split('\n')) {
        if (!id.isEmpty())
            windows.append({QString::fromLatin1(id), geometryOf(*this, QString::fromLatin1(id))});
    }
    return windows;
}

Window Desktop::waitForWindow(const QStringList &terms) const
{
    QList<Window> found;
    waitUntil([&] {
        found = windows(terms);
        return !found.isEmpty();
    });
    return found.value(0);
}

QString Desktop::property(const Window &window, const QString &name) const
{
    const QByteArray text = run(u"xprop"_qs, {u"-id"_qs, window.id, name});
    return QString::fromUtf8(text).section(u" = "_qs, 1).trimmed();
}

QImage Desktop::screenshot(QRect area) const
{
    const QByteArray png = run(u"import"_qs, {u"-silent"_qs, u"-window"_qs, u"root"_qs, u"png:-"_qs});
    return QImage::fromData(png, "png").copy(area);
}

void Desktop::recordOpened(const QStringList &mimeTypes)
{
    const QString recorder = m_root.filePath(u"recorder"_qs);
    make(recorder,
         u"#!/bin/sh\nprintf '%s\\n' \"$@\" >>'%1'\n"_qs.arg(m_root.filePath(u"opened"_qs)).toUtf8());
    QFile::setPermissions(recorder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    make(home() + u"/.local/share/applications/recorder.desktop"_qs,
         u"[Desktop Entry]\nType=Application\nName=Recorder\nExec=%1 %U\nMimeType=%2;\n"_qs
             .arg(recorder, mimeTypes.join(u';'))
             .toUtf8());
    const QString isDefault = u"=recorder.desktop\n"_qs;
    make(home() + u"/.config/mimeapps.list"_qs,
         (u"[Default Applications]\n"_qs + mimeTypes.join(isDefault) + isDefault).toUtf8());
}

QStringList Desktop::opened() const
{
    const QString file = m_root.filePath(u"opened"_qs);
    return QString::fromUtf8(QFile::exists(file) ? bytesOf(file) : "").split(u'\n', Qt::SkipEmptyParts);
}

} // namespace support
