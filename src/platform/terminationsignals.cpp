// SPDX-License-Identifier: MIT
#include "platform/terminationsignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

std::array<int, 2> wakeUpPipe = {-1, -1};

/// All that is safe inside a signal handler: leave a byte for the event loop.
void wakeUp(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t ignored = ::write(wakeUpPipe[1], &byte, 1);
}

} // namespace

void onTerminationSignal(std::function<void()> end)
{
    if (::pipe2(wakeUpPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *notifier = new QSocketNotifier(wakeUpPipe[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [end = std::move(end)] { end(); });
    struct sigaction action = {};
    action.sa_handler = wakeUp;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT})
        ::sigaction(signal, &action, nullptr);
}

void outliveFailedWrites()
{
    // A handler, not SIG_IGN, which programs started by us would inherit.
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGPIPE, SIGXFSZ})
        ::sigaction(signal, &action, nullptr);
}

} // namespace platform
