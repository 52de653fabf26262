// SPDX-License-Identifier: MIT
#include "platform/background.h"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace platform {

namespace {

using namespace std::chrono_literals;

constexpr auto patienceAtExit = 5s;

struct Pending
{
    std::mutex guard;
    std::condition_variable finished;
    int count = 0;
    bool watchesExit = false;
};

// Never destroyed: a hanging thread outlives the end of main.
Pending &pending()
{
    static auto *const state = new Pending;
    return *state;
}

void countDown()
{
    const std::scoped_lock lock(pending().guard);
    --pending().count;
    pending().finished.notify_all();
}

} // namespace

void waitForBackground()
{
    std::unique_lock lock(pending().guard);
    pending().watchesExit = false;
    pending().finished.wait_for(lock, patienceAtExit, [] { return pending().count == 0; });
    lock.unlock();
    QCoreApplication::sendPostedEvents(QCoreApplication::instance(), QEvent::MetaCall);
}

bool startThread(std::function<void()> work)
{
    try {
        std::thread(std::move(work)).detach();
        return true;
    } catch (const std::system_error &) {
        return false;
    }
}

bool runInBackground(std::function<void()> work)
{
    {
        const std::scoped_lock lock(pending().guard);
        ++pending().count;
        if (!pending().watchesExit)
            qAddPostRoutine(waitForBackground);
        pending().watchesExit = true;
    }
    const bool isStarted = startThread([work = std::move(work)]() mutable {
        work();
        work = nullptr; // what it holds goes before the end is told
        countDown();
    });
    if (!isStarted)
        countDown();
    return isStarted;
}

void runOnInterfaceThread(std::function<void()> call)
{
    if (QObject *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(call), Qt::QueuedConnection);
}

} // namespace platform
