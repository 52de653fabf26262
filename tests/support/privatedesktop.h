// SPDX-License-Identifier: MIT
#pragma once

#include "support/files.h"

#include <QHash>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

#include <sys/types.h>

namespace support {

/// A home with nothing but the programs that a test registers. They all are the recorder, which leaves a note
/// of how it was started. What opens links runs in a process of its own, since GIO reads the desktop's set-up
/// once.
class PrivateDesktop
{
public:
    struct Launch
    {
        QStringList arguments; ///< without the program's own name
        QString program; ///< as which it was started
        /// Its environment, "folder", "output" (where its standard output goes) and "ownSession" ("yes").
        QHash<QString, QString> facts;
    };
    struct Outcome
    {
        int exitCode = -1;
        QByteArray output;
        QList<Launch> launches; ///< of all programs started, after the last of them has ended
    };

    PrivateDesktop();

    QString path(const QString &relative) const { return m_folder.filePath(relative); }
    /// As `make`.
    QString write(const QString &relative, const QByteArray &content) const
    {
        return make(path(relative), content);
    }
    /// Registers "<id>.desktop" for the types; its Exec line begins with the recorder and `arguments`.
    void addHandler(const QString &id, const QStringList &types,
                    const QString &arguments = QStringLiteral("%u"));
    /// The text of an entry that starts the recorder.
    static QByteArray desktopEntry(const QString &arguments);
    /// Makes the recorder a program in PATH.
    QString addProgram(const QString &name) const;
    void setVariable(const QString &name, const QString &value) { m_environment.insert(name, value); }

    /// Runs this test's own program with one argument, given `input`, and waits for it and all that it
    /// started.
    Outcome run(const QString &task, const QByteArray &input) const;

private:
    pid_t start(const QString &task) const;

    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    QStringList m_defaults;
};

/// For the main of such a test: all of standard input.
QByteArray readInput();

} // namespace support
