// SPDX-License-Identifier: MIT
#include "platform/foldersearch.h"

#include "platform/mounttable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <array>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr size_t bufferSize = 64 * 1024; // bytes; the kernel's answer to one reading of a folder

/// The wanted inode numbers behind a filter that lets nearly all others fall with one look.
class Wanted
{
public:
    explicit Wanted(const QList<FileIdentity> &identities)
        : m_identities(identities)
    {
        for (const FileIdentity &identity : identities)
            m_filter[slot(identity.inode)] = true;
    }

    bool mayContain(quint64 inode) const { return m_filter[slot(inode)]; }

    std::optional<SearchHit> match(quint64 inode, const std::string &folder, const char *name) const
    {
        for (qsizetype i = 0; i < m_identities.size(); ++i) {
            if (m_identities.at(i).inode != inode)
                continue;
            const QByteArray path = QByteArray::fromStdString(folder == "/" ? folder : folder + '/') + name;
            const std::optional<FileIdentity> present = identify(path);
            if (present && isSameFile(m_identities.at(i), *present))
                return SearchHit{i, path};
        }
        return std::nullopt;
    }

private:
    static constexpr size_t slots = 4096;
    static size_t slot(quint64 inode) { return inode % slots; }

    const QList<FileIdentity> &m_identities;
    std::array<bool, slots> m_filter = {};
};

/// Calls `visit` for each entry but "." and ".." until it returns false or the limit is reached.
template <typename Visitor>
void readFolder(int folder, char *buffer, const SearchLimit &limit, const Visitor &visit)
{
    while (!limit.isReached()) {
        const ssize_t length = ::getdents64(folder, buffer, bufferSize);
        if (length <= 0)
            return;
        for (ssize_t at = 0; at < length;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(buffer + at);
            at += entry->d_reclen;
            const char *name = entry->d_name;
            if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
                continue;
            if (!visit(*entry))
                return;
        }
    }
}

std::string realPath(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.constData(), nullptr), &std::free);
    return real ? real.get() : path.toStdString();
}

std::unordered_set<std::string> mountPlaces()
{
    std::unordered_set<std::string> places;
    for (const QByteArray &place : MountTable().places())
        places.insert(place.toStdString());
    return places;
}

int openFolder(const char *path)
{
    return ::open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
}

bool isWorthEntering(int folder, const dirent64 &entry)
{
    const std::string_view name = entry.d_name;
    if (name.front() == '.' || name == "node_modules" || name == "__pycache__")
        return false;
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status;
    return ::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

bool SearchLimit::isReached() const
{
    return (cancelled && cancelled->load(std::memory_order_relaxed))
        || std::chrono::steady_clock::now() >= deadline;
}

std::optional<SearchHit> findInFolder(const QByteArray &folder, const QList<FileIdentity> &wanted,
                                      const SearchLimit &limit)
{
    const int file = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return std::nullopt;
    alignas(dirent64) char buffer[bufferSize];
    const Wanted filter(wanted);
    const std::string place = folder.toStdString();
    std::optional<SearchHit> hit;
    readFolder(file, buffer, limit, [&](const dirent64 &entry) {
        if (filter.mayContain(entry.d_ino))
            hit = filter.match(entry.d_ino, place, entry.d_name);
        return !hit;
    });
    ::close(file);
    return hit;
}

void findBelowFolders(const QList<QByteArray> &folders, const QList<FileIdentity> &wanted,
                      const SearchLimit &limit, const std::function<bool(const SearchHit &)> &hit)
{
    alignas(dirent64) char buffer[bufferSize];
    const Wanted filter(wanted);
    // Not entered: folders already gone through, and those on which something is mounted, since opening one
    // that belongs to an automounter or a dead server hangs.
    std::unordered_set<std::string> barred = mountPlaces();
    for (const QByteArray &start : folders) {
        const std::string root = realPath(start);
        std::deque<std::string> queue = {root};
        for (; !queue.empty() && !limit.isReached(); queue.pop_front()) {
            const std::string &folder = queue.front();
            if (folder != root && barred.contains(folder))
                continue;
            const int file = openFolder(folder.c_str());
            if (file < 0)
                continue;
            const size_t before = queue.size();
            bool isCache = false;
            bool goOn = true;
            readFolder(file, buffer, limit, [&](const dirent64 &entry) {
                if (filter.mayContain(entry.d_ino)) {
                    if (const std::optional<SearchHit> found =
                            filter.match(entry.d_ino, folder, entry.d_name))
                        goOn = hit(*found);
                }
                if (entry.d_type != DT_REG && isWorthEntering(file, entry))
                    queue.push_back((folder == "/" ? folder : folder + '/') + entry.d_name);
                else if (entry.d_name[0] == 'C' && std::strcmp(entry.d_name, "CACHEDIR.TAG") == 0)
                    isCache = true;
                return goOn;
            });
            ::close(file);
            if (!goOn)
                return;
            if (isCache)
                queue.erase(queue.begin() + ptrdiff_t(before), queue.end());
        }
        barred.insert(root);
    }
}

bool liesInTrash(const QByteArray &path)
{
    // On other file systems than the home folder's: ".Trash/1000" or ".Trash-1000" in the topmost folder.
    const QByteArray user = QByteArray::number(::getuid());
    if (path.contains("/.Trash-" + user + '/') || path.contains("/.Trash/" + user + '/'))
        return true;
    const QString trash =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Trash");
    if (path.startsWith(QFile::encodeName(trash) + '/'))
        return true;
    const QString real = QFileInfo(trash).canonicalFilePath();
    return !real.isEmpty() && path.startsWith(QFile::encodeName(real) + '/');
}

} // namespace platform
