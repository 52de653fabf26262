// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QStringDecoder>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

/// What files are called until they are whole; a number in hexadecimal digits follows.
constexpr QLatin1String unfinished(".pondwicket-");

/// A file that is closed at the end of the scope.
class Descriptor
{
public:
    /// Never waits for the other end of a pipe, never becomes anyone's terminal.
    Descriptor(const QString &path, int flags, unsigned mode = 0)
    {
        const QByteArray name = QFile::encodeName(path);
        do {
            m_number = ::open(name.constData(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode);
        } while (m_number < 0 && errno == EINTR);
    }
    ~Descriptor() { close(); }
    Q_DISABLE_COPY_MOVE(Descriptor)

    int number() const { return m_number; }

    /// False when what was written turns out not to have arrived.
    bool close() { return m_number < 0 || ::close(std::exchange(m_number, -1)) == 0; }

    /// Fills `status`. Fails for anything but a regular file, with an errno that says so.
    bool isRegularFile(struct stat *status) const
    {
        if (m_number < 0 || ::fstat(m_number, status) != 0)
            return false;
        if (!S_ISREG(status->st_mode))
            errno = S_ISDIR(status->st_mode) ? EISDIR : EINVAL;
        return S_ISREG(status->st_mode);
    }

    /// How many bytes came, 0 at the end, -1 on failure.
    ssize_t read(char *buffer, qsizetype size) const
    {
        ssize_t got;
        do {
            got = ::read(m_number, buffer, size_t(size));
        } while (got < 0 && errno == EINTR);
        return got;
    }

    bool write(QByteArrayView bytes) const
    {
        while (!bytes.isEmpty()) {
            const ssize_t written = ::write(m_number, bytes.data(), size_t(bytes.size()));
            if (written < 0 && errno == EINTR)
                continue;
            if (written < 0)
                return false;
            bytes = bytes.sliced(written);
        }
        return true;
    }

private:
    int m_number = -1;
};

/// Fills `error` from errno. False, for the caller to return.
bool fail(Error *error, const QString &deed, const QString &path)
{
    const int number = errno;
    if (error)
        *error = Error::fromErrno(deed.arg(displayName(path)), number, path);
    return false;
}

/// Where writing to the path would end: links followed, the last of them also when it leads to nothing yet.
QString followLinks(QString path)
{
    constexpr int maxLinks = 40; // as many as the kernel follows
    for (int i = 0; i < maxLinks; ++i) {
        char target[PATH_MAX];
        const ssize_t length = ::readlink(QFile::encodeName(path).constData(), target, sizeof target);
        if (length <= 0)
            break;
        const QString next = QFile::decodeName(QByteArray(target, length));
        path = next.startsWith(u'/') ? next : path.first(path.lastIndexOf(u'/') + 1) + next;
    }
    return path;
}

} // namespace

QString displayName(const QString &path)
{
    return path.section(u'/', -1, -1, QString::SectionSkipEmpty);
}

bool itemExists(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0;
}

std::optional<QByteArray> readWholeFile(const QString &path, Error *error, qint64 maxSize)
{
    const auto failed = [&] {
        fail(error, QStringLiteral("The file “%1” could not be read"), path);
        return std::nullopt;
    };
    const Descriptor file(path, O_RDONLY);
    struct stat status;
    if (!file.isRegularFile(&status))
        return failed();
    // One byte more than it says: files of the kernel's own say 0, and a file may grow while it is read.
    QByteArray bytes;
    qsizetype length = 0;
    qsizetype room = status.st_size + 1;
    while (true) {
        if (maxSize >= 0 && (status.st_size > maxSize || length > maxSize)) {
            errno = EFBIG;
            return failed();
        }
        bytes.resize(length + room);
        const ssize_t got = file.read(bytes.data() + length, room);
        if (got < 0)
            return failed();
        length += got;
        room = got < room ? room - got : qMax<qsizetype>(length, 65536);
        if (got == 0)
            break;
    }
    bytes.truncate(length);
    return bytes;
}

std::optional<QString> decodeUtf8(QByteArrayView bytes, Error *error)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    if (bytes.isValidUtf8()) { // QString::fromUtf8 would skip a second mark, which is text
        return QString(QStringDecoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom)(bytes));
    }
    if (error)
        *error = {QStringLiteral("UTF-8"), 1, QStringLiteral("The text is not valid UTF-8."), QString()};
    return std::nullopt;
}

bool writeInPlace(const QString &path, QByteArrayView bytes, Error *error)
{
    // Truncated only once it is known to be a file.
    Descriptor file(path, O_WRONLY | O_CREAT, 0666);
    struct stat status;
    if (file.isRegularFile(&status) && ::ftruncate(file.number(), 0) == 0 && file.write(bytes)
        && file.close())
        return true;
    return fail(error, QStringLiteral("The file “%1” could not be written"), path);
}

bool writeAtomically(const QString &path, QByteArrayView bytes, Error *error, unsigned mode)
{
    const auto failed = [&] {
        return fail(error, QStringLiteral("The file “%1” could not be written"), path);
    };
    const QString target = followLinks(path);
    struct stat old;
    const bool replaces = ::lstat(QFile::encodeName(target).constData(), &old) == 0;
    if (replaces && !S_ISREG(old.st_mode)) {
        errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
        return failed();
    }
    // A short name of its own: the target's may already be as long as names can be. Its number comes from the
    // system, since a forked process would go on with its parent's numbers and meet files that a killed one
    // left.
    const QString fresh = target.first(target.lastIndexOf(u'/') + 1) + unfinished
        + QString::number(QRandomGenerator::system()->generate64(), 16);
    Descriptor file(fresh, O_WRONLY | O_CREAT | O_EXCL, replaces ? 0600 : mode);
    if (file.number() < 0)
        return failed();
    if ((!replaces || ::fchmod(file.number(), old.st_mode & 07777) == 0) && file.write(bytes) && file.close()
        && ::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(target).constData()) == 0)
        return true;
    failed();
    ::unlink(QFile::encodeName(fresh).constData());
    return false;
}

void removeLeftovers(const QString &folder, qint64 age)
{
    for (const QString &name : QDir(folder).entryList({unfinished + u'*'}, QDir::Files | QDir::Hidden)) {
        const QString number = name.sliced(unfinished.size());
        const QByteArray path = QFile::encodeName(folder + u'/' + name);
        struct stat status;
        if (QString::number(number.toULongLong(nullptr, 16), 16) == number
            && ::lstat(path.constData(), &status) == 0 && S_ISREG(status.st_mode)
            && status.st_uid == ::geteuid() && ::time(nullptr) - status.st_ctim.tv_sec >= age)
            ::unlink(path.constData());
    }
}

void flushToDisk(const QString &path)
{
    const Descriptor file(path, O_RDONLY);
    struct stat status;
    if (file.isRegularFile(&status))
        ::fdatasync(file.number());
}

bool writeBySwapping(const QString &path, const QString &spare, QByteArrayView bytes, Error *error)
{
    const QByteArray from = QFile::encodeName(spare);
    const QByteArray to = QFile::encodeName(path);
    Descriptor file(spare, O_WRONLY | O_CREAT, 0600);
    struct stat status;
    if (file.isRegularFile(&status) && file.write(bytes) && ::ftruncate(file.number(), bytes.size()) == 0
        && file.close()) {
        // Without a file at `path`, or where the file system cannot exchange two, it moves there.
        if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE) == 0
            || ::rename(from.constData(), to.constData()) == 0)
            return true;
    }
    return fail(error, QStringLiteral("The file “%1” could not be written"), path);
}

bool copyFile(const QString &source, const QString &target, Error *error)
{
    const Descriptor from(source, O_RDONLY);
    struct stat status;
    if (!from.isRegularFile(&status))
        return fail(error, QStringLiteral("The file “%1” could not be read"), source);
    const auto failed = [&] {
        return fail(error, QStringLiteral("The file “%1” could not be written"), target);
    };
    Descriptor to(target, O_WRONLY | O_CREAT | O_EXCL, 0600);
    if (to.number() < 0)
        return failed();
    QByteArray buffer(256 * 1024, Qt::Uninitialized);
    ssize_t got;
    while ((got = from.read(buffer.data(), buffer.size())) > 0) {
        if (!to.write(QByteArrayView(buffer).first(got)))
            break;
    }
    if (got == 0 && to.close())
        return true;
    failed();
    ::unlink(QFile::encodeName(target).constData());
    return false;
}

bool makeFolder(const QString &path, Error *error)
{
    const auto failed = [&] {
        return fail(error, QStringLiteral("The folder “%1” could not be made"), path);
    };
    const QByteArray name = QFile::encodeName(path);
    struct stat status;
    if (::mkdir(name.constData(), 0777) == 0)
        return true;
    const int number = errno;
    if (::stat(name.constData(), &status) == 0) {
        errno = ENOTDIR;
        return S_ISDIR(status.st_mode) || failed();
    }
    const qsizetype slash = path.lastIndexOf(u'/');
    if (number == ENOENT && slash > 0) {
        // Its parent is missing. If that cannot be made, its own reason is the one to tell.
        if (!makeFolder(path.first(slash), error))
            return false;
        return ::mkdir(name.constData(), 0777) == 0 || errno == EEXIST || failed();
    }
    errno = number;
    return failed();
}

} // namespace platform
