// SPDX-License-Identifier: MIT
#pragma once

#include "support/process.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QTemporaryDir>

#include <vector>

namespace support {

struct DesktopOptions
{
    QString windowManager = QStringLiteral("openbox"); ///< with its arguments; empty for none
    bool compositor = false;
    QSize screen = {1280, 800};
};

/// A top-level window as the X server knows it. A value: ask again after a change.
struct Window
{
    QString id; ///< as the tools take it; empty for no window
    QRect geometry; ///< on the screen, without a frame

    bool isNull() const { return id.isEmpty(); }
    QPoint at(int x, int y) const { return geometry.topLeft() + QPoint(x, y); }
    bool operator==(const Window &) const = default;
};

/// A desktop of a test's own: virtual X server, window manager, session bus, home and XDG folders. All of it
/// is gone when the object is.
class Desktop
{
public:
    explicit Desktop(const DesktopOptions &options = {});
    ~Desktop();
    Q_DISABLE_COPY_MOVE(Desktop)

    /// False when a part did not come up; `problem` then names it.
    bool isUp() const { return m_problem.isEmpty(); }
    const QString &problem() const { return m_problem; }

    /// The window manager: one at a time, and the desktop's programs stay.
    bool startManager(const QString &command);
    void endManager();

    /// What programs on this desktop see; change it before they start.
    QProcessEnvironment &environment() { return m_environment; }
    const QProcessEnvironment &environment() const { return m_environment; }
    QString home() const { return m_root.filePath(QStringLiteral("home")); }
    QString applicationFolder() const { return home() + u"/Documents/pondWicket ƒ"_qs; }
    QString settingsFile() const { return applicationFolder() + u"/pondWicket-settings.json"_qs; }

    /// The standard output of a tool run on this desktop ("xprop", {"-root"}).
    QByteArray run(const QString &program, const QStringList &arguments) const
    {
        return outputOf(program, arguments, m_environment);
    }
    QByteArray xdotool(const QStringList &words) const { return run(u"xdotool"_qs, words); }

    /// The mapped windows that match xdotool's search terms ("--name", "^pondWicket$").
    QList<Window> windows(const QStringList &terms) const;
    Window windowNamed(const QString &name) const
    {
        return windows({u"--name"_qs, u'^' + name + u'$'}).value(0);
    }
    /// What stands at a place, in words that are to be compared only.
    QByteArray windowAt(QPoint place) const
    {
        moveTo(place);
        return xdotool({u"getmouselocation"_qs, u"--shell"_qs}).split('\n').value(3);
    }
    void activate(const Window &window) const { xdotool({u"windowactivate"_qs, u"--sync"_qs, window.id}); }
    /// The first of them, waited for; a null one when none comes.
    Window waitForWindow(const QStringList &terms) const;
    /// A property's value in xprop's words ("_NET_WM_STATE_ABOVE"); empty when it is not set.
    QString property(const Window &window, const QString &name) const;

    void moveTo(QPoint to) const { xdotool(u"mousemove %1 %2"_qs.arg(to.x()).arg(to.y()).split(u' ')); }
    void press() const { xdotool({u"mousedown"_qs, u"1"_qs}); }
    void release() const { xdotool({u"mouseup"_qs, u"1"_qs}); }
    void click(QPoint at, int button = 1) const
    {
        xdotool(u"mousemove %1 %2 click %3"_qs.arg(at.x()).arg(at.y()).arg(button).split(u' '));
    }
    /// "ctrl+q", "Escape", as xdotool names them; goes to the window that has the focus.
    void key(const QString &keys) const { xdotool({u"key"_qs, keys}); }
    void type(const QString &text) const { xdotool({u"type"_qs, text}); }
    QImage screenshot(QRect area) const;

    /// Makes a recording program the default for these MIME types ("x-scheme-handler/https").
    void recordOpened(const QStringList &mimeTypes);
    /// What the recording program was asked to open, oldest first.
    QStringList opened() const;

private:
    bool start(const QString &what, const QString &program, const QStringList &arguments,
               QByteArray *firstLine = nullptr);

    QTemporaryDir m_root;
    QProcessEnvironment m_environment;
    std::vector<std::unique_ptr<QProcess>> m_processes;
    std::unique_ptr<QProcess> m_manager;
    QString m_problem;
};

} // namespace support
