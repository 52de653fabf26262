// SPDX-License-Identifier: MIT
#include "platform/aliasresolver.h"

#include "platform/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>

namespace platform {

namespace {

using namespace std::chrono_literals;

constexpr int maxSteps = 16; // alias files that lead to alias files
constexpr auto nearbyTime = 8ms; // for all that is looked through before the worker, of 20 for one link
constexpr qsizetype nearbyFolders = 3; // whose subfolders are looked through, too, in what is left of it
constexpr qsizetype maxRemembered = 4096; // entries of each memory; then it starts anew

std::nullopt_t notFound(Error *error, const QByteArray &path, int number)
{
    if (error) {
        const QString text = QFile::decodeName(path);
        *error = Error::fromErrno(QStringLiteral("The file “%1” could not be found").arg(displayName(text)),
                                  number, text);
    }
    return std::nullopt;
}

std::nullopt_t broken(Error *error, const QByteArray &aliasFile, const QString &reason)
{
    if (error)
        *error = {QStringLiteral("Alias"), 2, reason, QFile::decodeName(aliasFile)};
    return std::nullopt;
}

AliasResolver::Places userPlaces()
{
    const QByteArray home = QFile::encodeName(QDir::homePath());
    const QByteArray documents =
        QFile::encodeName(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    return {home, documents.isEmpty() ? QList{home} : QList{documents, home}};
}

bool fits(FileKind kind, const struct stat &status)
{
    return kind == FileKind::Any || kind == fileKind(status.st_mode);
}

template <typename Value>
void remember(QHash<QByteArray, Value> &memory, const QByteArray &key, const Value &value)
{
    if (memory.size() >= maxRemembered)
        memory.clear();
    memory.insert(key, value);
}

} // namespace

AliasResolver::AliasResolver(const Places &places, std::unique_ptr<MountTable> mounts)
    : m_hints(places.home)
    , m_mounts(std::move(mounts))
    , m_search(places.searched,
               [this] { QMetaObject::invokeMethod(this, &AliasResolver::targetFound, Qt::QueuedConnection); })
{
    if (m_hints.watch() < 0)
        return;
    auto *deletions = new QSocketNotifier(m_hints.watch(), QSocketNotifier::Read, this);
    connect(deletions, &QSocketNotifier::activated, this, [this] { m_hints.letGoDeleted(); });
}

std::optional<AliasResolver::Place> AliasResolver::look(const QByteArray &path, Error *error)
{
    Place place{path, {}};
    if (m_mounts->mayHang(path))
        return notFound(error, path, EHOSTDOWN);
    if (::stat(path.constData(), &place.status) != 0)
        return notFound(error, path, errno);
    return place;
}

const AliasResolver::Entry &AliasResolver::read(const Place &place)
{
    const FileStamp stamp = FileStamp::of(place.status);
    if (const auto known = m_entries.constFind(place.path);
        known != m_entries.cend() && known->stamp == stamp)
        return *known;
    Entry entry;
    if (stamp.isSettled())
        entry.stamp = stamp;
    if (isAliasFile(place.path)) {
        const QString path = QFile::decodeName(place.path);
        const std::optional<QByteArray> text = readWholeFile(path, &entry.error, maxAliasFileSize);
        const std::optional<AliasRecord> record = text ? parseAlias(*text, &entry.error) : std::nullopt;
        entry.content = record ? Content::Alias : Content::Broken;
        entry.record = record.value_or(AliasRecord());
        entry.key = targetKey(entry.record);
        entry.error.path = path;
    }
    remember(m_entries, place.path, entry);
    return *m_entries.constFind(place.path);
}

std::optional<AliasTarget> AliasResolver::resolve(const QByteArray &path, Error *error)
{
    if (path.isEmpty() || path.contains('\0'))
        return notFound(error, path, path.isEmpty() ? ENOENT : EINVAL);
    std::optional<Place> place =
        look(path.startsWith('/') ? path : QFile::encodeName(QDir::currentPath()) + '/' + path, error);
    for (int step = 0; place; ++step) {
        if (!S_ISREG(place->status.st_mode))
            return AliasTarget{place->path, S_ISDIR(place->status.st_mode)};
        const Entry &entry = read(*place);
        if (entry.content == Content::Other)
            return AliasTarget{place->path, false};
        if (entry.content == Content::Broken) {
            if (error)
                *error = entry.error;
            return std::nullopt;
        }
        if (step == maxSteps)
            return broken(error, path, QStringLiteral("The alias leads through too many others."));
        std::optional<Place> next = follow(entry, place->path);
        if (!next)
            return broken(error, place->path, QStringLiteral("The target of the alias could not be found."));
        place = std::move(next);
    }
    return std::nullopt;
}

std::optional<AliasResolver::Place> AliasResolver::recordedPlace(const Entry &entry)
{
    std::optional<Place> place = look(entry.record.path, nullptr);
    if (!place || !fits(entry.record.kind, place->status))
        return std::nullopt;
    return place;
}

std::optional<AliasResolver::Place> AliasResolver::accept(const std::optional<QByteArray> &path,
                                                          const Entry &entry)
{
    std::optional<Place> place = path && !liesInTrash(*path) ? look(*path, nullptr) : std::nullopt;
    if (!place || !fits(entry.record.kind, place->status))
        return std::nullopt;
    m_hints.keep(entry.key, place->path, place->status);
    return place;
}

std::optional<AliasResolver::Place> AliasResolver::follow(const Entry &entry, const QByteArray &aliasFile)
{
    // The common case, and the one that has to be fast: nothing has happened.
    const AliasRecord &record = entry.record;
    if (std::optional<Place> place = recordedPlace(entry);
        place && !(record.path.contains("Trash") && liesInTrash(record.path))) {
        m_hints.keep(entry.key, place->path, place->status);
        return place;
    }
    if (std::optional<Place> place = accept(m_hints.place(entry.key), entry))
        return place;
    if (std::optional<Place> place = accept(searchedPlace(entry), entry))
        return place;
    const SearchLimit limit = SearchLimit::after(nearbyTime);
    QList<QByteArray> standing;
    if (std::optional<Place> place = accept(nearbyPlace(entry, limit, standing), entry))
        return place;
    if (!record.relativePath.isEmpty()) {
        const QByteArray relative = absolutePath(record.relativePath, parentPath(aliasFile));
        if (std::optional<Place> place = accept(relative, entry))
            return place;
    }
    if (!m_search.isWorthwhile(record))
        return std::nullopt;
    std::optional<QByteArray> found;
    findBelowFolders(standing, chainOf(record), limit, [&](const SearchHit &hit) {
        found = descend(record, hit.index, hit.path);
        return !found;
    });
    if (std::optional<Place> place = accept(found, entry))
        return place;
    m_search.start(record);
    return std::nullopt;
}

std::optional<QByteArray> AliasResolver::searchedPlace(const Entry &entry)
{
    const std::optional<AliasSearch::Answer> answer = m_search.answer(entry.record);
    if (!answer)
        return std::nullopt;
    if (look(answer->path, nullptr) && identify(answer->path) == answer->identity)
        return answer->path;
    m_search.forget(entry.record);
    return std::nullopt;
}

/// The target in its recorded folder under another name, or below one of the folders above when one of those
/// was moved or renamed. `standing` takes the nearest folders that still stand where they were.
std::optional<QByteArray> AliasResolver::nearbyPlace(const Entry &entry, const SearchLimit &limit,
                                                     QList<QByteArray> &standing)
{
    const AliasRecord &record = entry.record;
    const QList<FileIdentity> chain = chainOf(record);
    QByteArray folder = record.path;
    for (qsizetype level = 1; level <= record.folders.size() && folder != "/" && !limit.isReached();
         ++level) {
        folder = parentPath(folder);
        const std::optional<Place> place = look(folder, nullptr);
        if (!place)
            continue;
        const std::optional<FileIdentity> present = identify(folder);
        if (level > 1 && (!present || !isSameFile(record.folders.at(level - 1), *present)))
            continue;
        if (standing.size() < nearbyFolders)
            standing.append(folder);
        const FileStamp stamp = FileStamp::of(place->status);
        const QByteArray missKey = entry.key + '\0' + folder;
        if (m_misses.value(missKey) == stamp)
            continue;
        const std::optional<SearchHit> hit =
            findInFolder(folder, chain.first(std::min(level, chain.size())), limit);
        if (hit) {
            if (std::optional<QByteArray> path = descend(record, hit->index, hit->path))
                return path;
        } else if (stamp.isSettled() && !limit.isReached()) {
            remember(m_misses, missKey, stamp);
        }
    }
    return std::nullopt;
}

void AliasResolver::refresh(const QByteArray &path)
{
    std::optional<Place> place = look(path, nullptr);
    for (int step = 0; step < maxSteps && place && S_ISREG(place->status.st_mode); ++step) {
        const Entry entry = read(*place);
        if (entry.content != Content::Alias)
            return;
        std::optional<Place> next = follow(entry, place->path);
        if (!next)
            return;
        if (next->path != entry.record.path || identify(next->path) != entry.record.identity)
            writeAliasFile(next->path, place->path, nullptr);
        place = std::move(next);
    }
}

void AliasResolver::hold(const QByteArray &path)
{
    const std::optional<Place> place = path.startsWith('/') ? look(path, nullptr) : std::nullopt;
    if (!place || !S_ISREG(place->status.st_mode))
        return;
    const Entry &entry = read(*place);
    if (entry.content != Content::Alias)
        return;
    if (const std::optional<Place> target = recordedPlace(entry))
        m_hints.keep(entry.key, target->path, target->status);
}

AliasResolver &aliasResolver()
{
    static std::unique_ptr<AliasResolver> resolver;
    if (!resolver) {
        resolver = std::make_unique<AliasResolver>(userPlaces());
        // Its worker ends with the application object, not among the destructors of statics.
        qAddPostRoutine([] { resolver.reset(); });
    }
    return *resolver;
}

std::optional<AliasTarget> resolveAliasTarget(const QByteArray &path, Error *error)
{
    return aliasResolver().resolve(path, error);
}

std::optional<QString> resolveAlias(const QString &path, Error *error)
{
    const std::optional<AliasTarget> target = resolveAliasTarget(QFile::encodeName(path), error);
    return target ? std::optional(QFile::decodeName(target->path)) : std::nullopt;
}

void refreshAlias(const QByteArray &path)
{
    aliasResolver().refresh(path);
}

void holdTargets(const QList<QByteArray> &paths)
{
    for (const QByteArray &path : paths)
        aliasResolver().hold(path);
}

} // namespace platform
