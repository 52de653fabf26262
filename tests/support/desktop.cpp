// SPDX-License-Identifier: MIT
#include "support/desktop.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace support {

namespace {

QProcessEnvironment privateEnvironment(const QDir &root)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Whatever a real session left behind would lead programs out of the private desktop.
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        for (const char *prefix : {"XDG_", "QT_", "DBUS_", "WAYLAND_", "GTK_", "DESKTOP_", "XAUTHORITY"}) {
            if (name.startsWith(QLatin1String(prefix)))
                environment.remove(name);
        }
    }
    const QList<std::pair<QString, QString>> folders = {
        {QStringLiteral("HOME"), QStringLiteral("home")},
        {QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("home/.config")},
        {QStringLiteral("XDG_DATA_HOME"), QStringLiteral("home/.local/share")},
        {QStringLiteral("XDG_STATE_HOME"), QStringLiteral("home/.local/state")},
        {QStringLiteral("XDG_CACHE_HOME"), QStringLiteral("home/.cache")},
        {QStringLiteral("XDG_RUNTIME_DIR"), QStringLiteral("run")},
    };
    for (const auto &[name, folder] : folders) {
        root.mkpath(folder);
        environment.insert(name, root.filePath(folder));
    }
    QFile::setPermissions(root.filePath(QStringLiteral("run")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    return environment;
}

void writeText(const QString &path, const QString &text)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(text.toUtf8());
}

QRect geometryOf(const Desktop &desktop, const QString &id)
{
    const QString text =
        QString::fromUtf8(desktop.run(QStringLiteral("xwininfo"), {QStringLiteral("-id"), id}));
    const auto number = [&text](const QString &label) {
        return QRegularExpression(label + QStringLiteral(":\\s+(-?\\d+)")).match(text).captured(1).toInt();
    };
    return {number(QStringLiteral("Absolute upper-left X")), number(QStringLiteral("Absolute upper-left Y")),
            number(QStringLiteral("Width")), number(QStringLiteral("Height"))};
}

} // namespace

Desktop::Desktop(const DesktopOptions &options)
    : m_environment(privateEnvironment(QDir(m_root.path())))
{
    const QString size = QStringLiteral("%1x%2x24").arg(options.screen.width()).arg(options.screen.height());
    QByteArray display;
    if (!start(QStringLiteral("X server"), QStringLiteral("Xvfb"),
               {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                QStringLiteral("0"), size, QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                QStringLiteral("-noreset")},
               &display))
        return;
    m_environment.insert(QStringLiteral("DISPLAY"), u':' + QString::fromLatin1(display));

    QByteArray address;
    if (!start(QStringLiteral("session bus"), QStringLiteral("dbus-daemon"),
               {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1")},
               &address))
        return;
    m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QString::fromLatin1(address));

    if (!options.windowManager.isEmpty() && !startManager(options.windowManager))
        return;
    if (options.compositor)
        startCompositor();
}

Desktop::~Desktop()
{
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
        m_problem = what + QStringLiteral(" did not start");
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
    if (!start(program, program, arguments))
        return false;
    // A window that is mapped while a manager still starts is never shown: wait until it does what it is
    // asked.
    if (!waitUntil([this] {
            run(QStringLiteral("xdotool"), {QStringLiteral("set_num_desktops"), QStringLiteral("3")});
            return run(QStringLiteral("xdotool"), {QStringLiteral("get_num_desktops")}).trimmed() == "3";
        }))
        m_problem = program + QStringLiteral(" does not manage the screen");
    return isUp();
}

bool Desktop::startCompositor()
{
    if (!start(QStringLiteral("compositor"), QStringLiteral("picom"),
               {QStringLiteral("--backend"), QStringLiteral("xrender"), QStringLiteral("--config"),
                QStringLiteral("/dev/null")}))
        return false;
    // picom names its own window once it owns the screen's compositing selection.
    if (!waitUntil([this] {
            return !run(QStringLiteral("xdotool"),
                        {QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("^picom$")})
                        .isEmpty();
        }))
        m_problem = QStringLiteral("picom does not compose the screen");
    return isUp();
}

QString Desktop::applicationFolder() const
{
    return home() + QStringLiteral("/Documents/pondWicket ƒ");
}

QString Desktop::settingsFile() const
{
    return applicationFolder() + QStringLiteral("/pondWicket-settings.json");
}

QString Desktop::stateFolder() const
{
    return home() + QStringLiteral("/.local/state/pondWicket");
}

QByteArray Desktop::run(const QString &program, const QStringList &arguments) const
{
    return outputOf(program, arguments, m_environment);
}

QList<Window> Desktop::windows(const QStringList &terms) const
{
    const QByteArray ids =
        run(QStringLiteral("xdotool"),
            QStringList{QStringLiteral("search"), QStringLiteral("--onlyvisible")} + terms);
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
    const QByteArray text = run(QStringLiteral("xprop"), {QStringLiteral("-id"), window.id, name});
    return QString::fromUtf8(text).section(QStringLiteral(" = "), 1).trimmed();
}

void Desktop::moveTo(QPoint point) const
{
    run(QStringLiteral("xdotool"),
        {QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y())});
}

void Desktop::press(int button) const
{
    run(QStringLiteral("xdotool"), {QStringLiteral("mousedown"), QString::number(button)});
}

void Desktop::release(int button) const
{
    run(QStringLiteral("xdotool"), {QStringLiteral("mouseup"), QString::number(button)});
}

void Desktop::click(QPoint point, int button) const
{
    run(QStringLiteral("xdotool"),
        {QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()),
         QStringLiteral("click"), QString::number(button)});
}

void Desktop::key(const QString &keys) const
{
    run(QStringLiteral("xdotool"), {QStringLiteral("key"), keys});
}

void Desktop::type(const QString &text) const
{
    run(QStringLiteral("xdotool"), {QStringLiteral("type"), text});
}

QImage Desktop::screenshot(QRect area) const
{
    const QByteArray png = run(QStringLiteral("import"),
                               {QStringLiteral("-silent"), QStringLiteral("-window"), QStringLiteral("root"),
                                QStringLiteral("png:-")});
    const QImage screen = QImage::fromData(png, "png");
    return area.isNull() ? screen : screen.copy(area);
}

void Desktop::recordOpened(const QStringList &mimeTypes)
{
    const QString recorder = m_root.filePath(QStringLiteral("recorder"));
    writeText(recorder,
              QStringLiteral("#!/bin/sh\nprintf '%s\\n' \"$@\" >>'%1'\n")
                  .arg(m_root.filePath(QStringLiteral("opened"))));
    QFile::setPermissions(recorder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    writeText(home() + QStringLiteral("/.local/share/applications/recorder.desktop"),
              QStringLiteral("[Desktop Entry]\nType=Application\nName=Recorder\nExec=%1 %U\nMimeType=%2;\n")
                  .arg(recorder, mimeTypes.join(u';')));
    QString defaults = QStringLiteral("[Default Applications]\n");
    for (const QString &type : mimeTypes)
        defaults += type + QStringLiteral("=recorder.desktop\n");
    writeText(home() + QStringLiteral("/.config/mimeapps.list"), defaults);
}

QStringList Desktop::opened() const
{
    QFile file(m_root.filePath(QStringLiteral("opened")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace support
