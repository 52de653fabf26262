// SPDX-License-Identifier: MIT
#include "platform/terminal.h"

#include "platform/applauncher.h"
#include "platform/uri.h"

#include <QFile>
#include <QStandardPaths>

#include <algorithm>

namespace platform {

namespace {

struct Terminal
{
    const char *program;
    const char *option; ///< what stands before the command; nothing when null
};

// The user's or the administrator's choice first. Only terminals that take the command as separate arguments.
constexpr Terminal terminals[] = {
    {"xdg-terminal-exec", nullptr},
    {"x-terminal-emulator", "-e"},
    {"gnome-terminal", "--"},
    {"kgx", "--"},
    {"konsole", "-e"},
    {"xfce4-terminal", "-x"},
    {"mate-terminal", "-x"},
    {"terminator", "-x"},
    {"alacritty", "-e"},
    {"kitty", nullptr},
    {"foot", nullptr},
    {"urxvt", "-e"},
    {"xterm", "-e"},
};

// "[A-Za-z0-9._:-]+", not beginning like an option.
bool isHarmless(QStringView word)
{
    return !word.isEmpty() && !word.startsWith(u'-') && std::ranges::all_of(word, [](QChar c) {
        const char16_t code = c.unicode();
        return code < 128 && (c.isLetterOrNumber() || QStringView(u"._:-").contains(c));
    });
}

} // namespace

std::optional<QByteArrayList> shellCommand(const Uri &address)
{
    QStringView host = address.host;
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.sliced(1, host.size() - 2);
    const bool hasUser = !address.userInfo.isEmpty();
    // What follows a colon would be a password, and arguments can be seen by everybody on the machine.
    if (!isHarmless(host) || (hasUser && (!isHarmless(address.userInfo) || address.userInfo.contains(u':'))))
        return std::nullopt;

    QByteArrayList command = {"ssh"};
    if (hasUser)
        command << "-l" << address.userInfo.toLatin1();
    if (!address.port.isEmpty()) {
        bool isNumber = false;
        const uint port = address.port.toUInt(&isNumber);
        if (!isNumber || port < 1 || port > 65535)
            return std::nullopt;
        command << "-p" << QByteArray::number(port);
    }
    command << "--" << host.toLatin1();
    return command;
}

void openShell(const Uri &address)
{
    const auto command = shellCommand(address);
    if (!command)
        return;
    for (const Terminal &terminal : terminals) {
        const QString program = QStandardPaths::findExecutable(QString::fromLatin1(terminal.program));
        if (program.isEmpty())
            continue;
        QByteArrayList arguments = {QFile::encodeName(program)};
        if (terminal.option)
            arguments << terminal.option;
        launchProgram(arguments + *command);
        return;
    }
}

} // namespace platform
