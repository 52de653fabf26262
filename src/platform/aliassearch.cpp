// SPDX-License-Identifier: MIT
#include "platform/aliassearch.h"

#include "platform/background.h"
#include "platform/foldersearch.h"

#include <QHash>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace platform {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto roundTime = 3s;
constexpr auto exitPatience = 1s; // for a worker that is inside a call when the program ends
constexpr auto descentTime = 4ms; // also on the interface thread

struct Result
{
    std::optional<AliasSearch::Answer> answer; ///< none: missed
    Clock::time_point time;
};
using Results = QHash<QByteArray, Result>; // by target

bool isOfKind(const QByteArray &path, FileKind kind)
{
    struct stat status;
    return ::stat(path.constData(), &status) == 0
        && (kind == FileKind::Any || kind == fileKind(status.st_mode));
}

} // namespace

QByteArray targetKey(const AliasRecord &record)
{
    return record.path + '\0' + QByteArray::number(record.identity.inode) + record.identity.birth
        + record.identity.handle;
}

QList<FileIdentity> chainOf(const AliasRecord &record)
{
    // The root folder is everywhere the same and never worth finding.
    const qsizetype above = std::min(record.folders.size(), record.path.count('/') - 1);
    return QList<FileIdentity>{record.identity} + record.folders.first(std::max<qsizetype>(above, 0));
}

std::optional<QByteArray> descend(const AliasRecord &record, qsizetype level, const QByteArray &place)
{
    const QList<QByteArray> names = record.path.split('/');
    const QList<FileIdentity> chain = chainOf(record);
    const SearchLimit limit = SearchLimit::after(descentTime);
    QByteArray current = place;
    while (level > 0) {
        const QByteArray byName = current + '/' + names.at(names.size() - level);
        if (isOfKind(byName, level == 1 ? record.kind : FileKind::Folder)) {
            current = byName;
            --level;
            continue;
        }
        const std::optional<SearchHit> hit = findInFolder(current, chain.first(level), limit);
        if (!hit)
            return std::nullopt;
        current = hit->path;
        level = hit->index;
    }
    if (!isOfKind(current, record.kind) || liesInTrash(current))
        return std::nullopt;
    return current;
}

struct AliasSearch::State
{
    QList<QByteArray> folders;
    std::function<void()> found;
    std::atomic<bool> cancelled = false;

    std::mutex mutex; ///< guards what follows
    std::condition_variable ended;
    QList<AliasRecord> asked;
    QList<AliasRecord> running;
    Results results;
    bool isWorking = false;

    bool isLookedFor(const QByteArray &key) const
    {
        const auto same = [&key](const AliasRecord &record) { return targetKey(record) == key; };
        return std::any_of(asked.cbegin(), asked.cend(), same)
            || std::any_of(running.cbegin(), running.cend(), same);
    }
    bool mayHold(const AliasRecord &record) const;
    Results lookFor(const QList<AliasRecord> &records) const;
    void work();
};

/// A stick that was pulled out is not to be looked for in the home folder.
bool AliasSearch::State::mayHold(const AliasRecord &record) const
{
    if (record.device == 0 || record.fileSystem == 0)
        return true;
    // Either number alone may be another after the machine has started anew.
    return std::any_of(folders.cbegin(), folders.cend(), [&record](const QByteArray &folder) {
        struct stat status;
        return ::stat(folder.constData(), &status) == 0
            && (status.st_dev == record.device || fileSystemId(folder) == record.fileSystem);
    });
}

Results AliasSearch::State::lookFor(const QList<AliasRecord> &records) const
{
    // The folders above a target are looked for as well: a moved folder comes into view before what lies in
    // it.
    struct Origin
    {
        qsizetype record;
        qsizetype level;
    };
    QList<FileIdentity> wanted;
    QList<Origin> origins;
    Results round;
    qsizetype missing = 0;
    for (qsizetype i = 0; i < records.size(); ++i) {
        round.insert(targetKey(records.at(i)), {});
        if (!mayHold(records.at(i)))
            continue;
        ++missing;
        const QList<FileIdentity> chain = chainOf(records.at(i));
        for (qsizetype level = 0; level < chain.size(); ++level) {
            wanted.append(chain.at(level));
            origins.append({i, level});
        }
    }
    if (missing == 0)
        return round;
    findBelowFolders(folders, wanted, {Clock::now() + roundTime, &cancelled}, [&](const SearchHit &hit) {
        const Origin origin = origins.at(hit.index);
        Result &result = round[targetKey(records.at(origin.record))];
        if (result.answer)
            return true;
        const std::optional<QByteArray> path = descend(records.at(origin.record), origin.level, hit.path);
        const std::optional<FileIdentity> identity = path ? identify(*path) : std::nullopt;
        if (!identity)
            return true;
        result.answer = {*path, *identity};
        return --missing > 0;
    });
    return round;
}

void AliasSearch::State::work()
{
    std::unique_lock lock(mutex);
    while (!asked.isEmpty() && !cancelled) {
        running = std::exchange(asked, {});
        const QList<AliasRecord> records = running;
        lock.unlock();
        const Results round = lookFor(records);
        lock.lock();
        running.clear();
        bool anyFound = false;
        for (auto result = round.cbegin(); result != round.cend(); ++result) {
            results.insert(result.key(), {result->answer, Clock::now()});
            anyFound = anyFound || result->answer;
        }
        if (anyFound && !cancelled)
            found();
    }
    isWorking = false;
    ended.notify_all();
}

AliasSearch::AliasSearch(const QList<QByteArray> &folders, const std::function<void()> &found)
    : m_state(std::make_shared<State>())
{
    m_state->folders = folders;
    m_state->found = found;
}

AliasSearch::~AliasSearch()
{
    std::unique_lock lock(m_state->mutex);
    m_state->cancelled = true;
    m_state->ended.wait_for(lock, exitPatience, [this] { return !m_state->isWorking; });
}

bool AliasSearch::isWorthwhile(const AliasRecord &record) const
{
    const QByteArray key = targetKey(record);
    const std::lock_guard lock(m_state->mutex);
    const auto last = m_state->results.constFind(key);
    const bool missedLately =
        last != m_state->results.cend() && !last->answer && Clock::now() - last->time < missTime;
    return !missedLately && !m_state->isLookedFor(key);
}

void AliasSearch::start(const AliasRecord &record)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->asked.append(record);
    if (std::exchange(m_state->isWorking, true))
        return;
    if (!startThread([state = m_state] { state->work(); })) {
        m_state->asked.clear();
        m_state->isWorking = false;
    }
}

std::optional<AliasSearch::Answer> AliasSearch::answer(const AliasRecord &record) const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->results.value(targetKey(record)).answer;
}

void AliasSearch::forget(const AliasRecord &record)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->results.remove(targetKey(record));
}

void AliasSearch::wait()
{
    std::unique_lock lock(m_state->mutex);
    m_state->ended.wait(lock, [this] { return !m_state->isWorking; });
}

} // namespace platform
