// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"
#include "support/desktop.h"

#include <optional>

struct xcb_connection_t;

namespace bench {

/// What a settings file of a trial holds.
struct Strip
{
    QString theme = QStringLiteral("2024");
    QString direction = QStringLiteral("ltr");
    bool showsDate = false;
    int tiles = 20;
    int linksPerTile = 3;
};

SettingsData settingsOf(const Strip &strip);

/// A virtual screen that can be looked at, with the program and its floor to start on it.
class Trial
{
public:
    Trial();
    ~Trial();

    support::Desktop &desktop() { return m_desktop; }
    /// The program's command and the floor's, the latter with 22 pictures as the strip shows them.
    QStringList program() const;
    QStringList floor();
    /// Makes the strip what the next start finds. The first call starts the program once, which installs the
    /// themes.
    void write(const Strip &strip);

    /// Started and looked at until its picture has been the same for a while.
    struct Shown
    {
        std::unique_ptr<QProcess> process;
        size_t picture = 0; ///< a hash of what is on the screen
        double cpu = 0; ///< ms of the process's own until that picture was there
    };
    /// Ends as soon as the screen shows `expected` when that is given. The picture is 0 when none came.
    Shown start(const QStringList &command, std::optional<size_t> expected = std::nullopt,
                const QProcessEnvironment *environment = nullptr);
    /// Ends the process and waits until the screen is as it was.
    void end(QProcess &process);

private:
    size_t look() const;

    support::Desktop m_desktop;
    QTemporaryDir m_pictures;
    xcb_connection_t *m_connection;
    bool m_vertical = false;
    size_t m_blank = 0;
};

/// The time on a processor of a process so far.
double cpuOf(qint64 pid); // ms
/// The memory of a process: "Pss:" with what it shares divided among those that share it, "Anonymous:" what
/// no file stands behind.
double memoryOf(qint64 pid, const char *kind); // MiB

} // namespace bench
