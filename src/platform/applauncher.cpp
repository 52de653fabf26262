// SPDX-License-Identifier: MIT
#include "platform/applauncher.h"

#include "platform/childenvironment.h"
#include "platform/gio.h"

#include <QDir>
#include <QFile>

#include <atomic>
#include <ctime>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

// The id by which the window manager knows that the new program's window answers a click and may take the
// focus. X servers stamp events with the milliseconds of the monotonic clock, which is ours as well when the
// server is local.
char *startupId(GAppLaunchContext *, GAppInfo *, GList *)
{
    static std::atomic<int> number = 0;
    if (!qgetenv("DISPLAY").startsWith(':'))
        return nullptr;
    timespec now = {};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    const auto stamp = quint32(now.tv_sec * 1000 + now.tv_nsec / 1000000);
    const QByteArray id = "pondwicket-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(++number)
        + "_TIME" + QByteArray::number(stamp);
    return gio()->g_strdup(id.constData());
}

GType launchContextType()
{
    static const GType type = gio()->g_type_register_static_simple(
        gio()->g_app_launch_context_get_type(), "PondWicketLaunchContext", sizeof(GAppLaunchContextClass),
        [](gpointer ownClass, gpointer) {
            static_cast<GAppLaunchContextClass *>(ownClass)->get_startup_notify_id = startupId;
        },
        sizeof(GAppLaunchContext), nullptr, GTypeFlags(0));
    return type;
}

GioPointer<GAppLaunchContext> makeLaunchContext()
{
    GioPointer<GAppLaunchContext> context(reinterpret_cast<GAppLaunchContext *>(
        gio()->g_object_new_with_properties(launchContextType(), 0, nullptr, nullptr)));
    const auto changes = changesForChildren();
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change.value())
            gio()->g_app_launch_context_setenv(context.get(), change.key().constData(),
                                               change.value()->constData());
        else
            gio()->g_app_launch_context_unsetenv(context.get(), change.key().constData());
    }
    return context;
}

// Runs in the new process before the program does: only calls that are safe after a fork.
void leaveOurSession(gpointer folder)
{
    ::setsid();
    if (folder && ::chdir(static_cast<const char *>(folder)) != 0)
        return; // no home to start in: then where we are
}

// Nothing to read and nowhere to write, but error messages still reach the log of the desktop session. Where
// they go to the same place as our standard output they are dropped: a reader of our lines waits for the end
// of ours, not of a browser's.
class ChildStreams
{
public:
    ChildStreams()
        : m_null(::open("/dev/null", O_RDWR | O_CLOEXEC))
    {
        struct stat output;
        struct stat errors;
        m_sharesOutput = ::fstat(STDOUT_FILENO, &output) == 0 && ::fstat(STDERR_FILENO, &errors) == 0
            && output.st_dev == errors.st_dev && output.st_ino == errors.st_ino;
    }
    ~ChildStreams()
    {
        if (m_null >= 0)
            ::close(m_null);
    }
    Q_DISABLE_COPY_MOVE(ChildStreams)
    bool isValid() const { return m_null >= 0; }
    int input() const { return m_null; }
    int output() const { return m_null; }
    int errors() const { return m_sharesOutput ? m_null : -1; }

private:
    int m_null;
    bool m_sharesOutput = false;
};

} // namespace

void launchApplication(GAppInfo *application, const QByteArrayList &addresses)
{
    const ChildStreams streams;
    if (!streams.isValid())
        return;
    auto *const desktopFile = reinterpret_cast<GDesktopAppInfo *>(application);
    GList *first = nullptr;
    for (const QByteArray &address : addresses)
        first = gio()->g_list_append(first, const_cast<char *>(address.constData()));
    const GioPointer<GList> list(first);
    const GioPointer<char> ownFolder(gio()->g_desktop_app_info_get_string(desktopFile, "Path"));
    QByteArray home = QFile::encodeName(QDir::homePath());
    const bool startsAtHome = !ownFolder || !*ownFolder;
    GError *failure = nullptr;
    gio()->g_desktop_app_info_launch_uris_as_manager_with_fds(
        desktopFile, list.get(), makeLaunchContext().get(), G_SPAWN_SEARCH_PATH, leaveOurSession,
        startsAtHome ? home.data() : nullptr, nullptr, nullptr, streams.input(), streams.output(),
        streams.errors(), &failure);
    const GioPointer<GError> ignored(failure);
}

void launchProgram(const QByteArrayList &arguments)
{
    const ChildStreams streams;
    if (!streams.isValid())
        return;
    std::vector<const char *> vector;
    for (const QByteArray &argument : arguments)
        vector.push_back(argument.constData());
    vector.push_back(nullptr);
    const GioPointer<char *> environment(
        gio()->g_app_launch_context_get_environment(makeLaunchContext().get()));
    QByteArray home = QFile::encodeName(QDir::homePath());
    GError *failure = nullptr;
    gio()->g_spawn_async_with_pipes_and_fds(nullptr, vector.data(), environment.get(), G_SPAWN_SEARCH_PATH,
                                            leaveOurSession, home.data(), streams.input(), streams.output(),
                                            streams.errors(), nullptr, nullptr, 0, nullptr, nullptr, nullptr,
                                            nullptr, &failure);
    const GioPointer<GError> ignored(failure);
}

} // namespace platform
