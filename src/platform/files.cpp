// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

/// Closes the descriptor at the end of the scope.
class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Q_DISABLE_COPY_MOVE(Descriptor)
    int number() const { return m_number; }

private:
    int m_number;
};

int openRetrying(const QString &path, int flags, unsigned mode = 0)
{
    const QByteArray name = QFile::encodeName(path);
    int number;
    do {
        number = ::open(name.constData(), flags | O_CLOEXEC, mode);
    } while (number < 0 && errno == EINTR);
    return number;
}

bool fail(Error *error, const QString &what, const QString &path, int number)
{
    if (error)
        *error = Error::fromErrno(what.arg(displayName(path)), number, path);
    return false;
}

bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), size_t(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

} // namespace

QString displayName(const QString &path)
{
    return path.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty);
}

bool itemExists(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0;
}

std::optional<QByteArray> readWholeFile(const QString &path, Error *error, qint64 maxSize)
{
    const QString what = QStringLiteral("The file “%1” could not be read");
    const Descriptor file(openRetrying(path, O_RDONLY | O_NONBLOCK | O_NOCTTY));
    struct stat status;
    if (file.number() < 0 || ::fstat(file.number(), &status) != 0) {
        fail(error, what, path, errno);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        fail(error, what, path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
        return std::nullopt;
    }
    if (maxSize >= 0 && status.st_size > maxSize) {
        fail(error, what, path, EFBIG);
        return std::nullopt;
    }
    QByteArray bytes(status.st_size, Qt::Uninitialized);
    qsizetype length = 0;
    while (true) {
        if (length == bytes.size()) {
            // Files of the kernel's own say size 0, and a file may grow while it is read.
            if (maxSize >= 0 && length > maxSize) {
                fail(error, what, path, EFBIG);
                return std::nullopt;
            }
            char extra;
            const ssize_t more = ::read(file.number(), &extra, 1);
            if (more < 0 && errno == EINTR)
                continue;
            if (more < 0) {
                fail(error, what, path, errno);
                return std::nullopt;
            }
            if (more == 0)
                break;
            bytes.append(extra);
            ++length;
            bytes.resize(length + 65536);
            continue;
        }
        const ssize_t got = ::read(file.number(), bytes.data() + length, size_t(bytes.size() - length));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            fail(error, what, path, errno);
            return std::nullopt;
        }
        if (got == 0)
            break;
        length += got;
    }
    bytes.truncate(length);
    return bytes;
}

std::optional<QString> decodeUtf8(QByteArrayView bytes, Error *error)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (!decoder.hasError())
        return text;
    if (error) {
        *error = {QStringLiteral("UTF-8"), 1, QStringLiteral("The text is not valid UTF-8."), QString()};
    }
    return std::nullopt;
}

bool writeInPlace(const QString &path, QByteArrayView bytes, Error *error)
{
    const Descriptor file(openRetrying(path, O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY, 0666));
    if (file.number() < 0 || !writeAll(file.number(), bytes))
        return fail(error, QStringLiteral("The file “%1” could not be written"), path, errno);
    return true;
}

bool writeAtomically(const QString &path, QByteArrayView bytes, Error *error, unsigned mode)
{
    QSaveFile file(path);
    Q_UNUSED(mode)
    if (file.open(QIODevice::WriteOnly) && file.write(bytes.data(), bytes.size()) == bytes.size()
        && file.commit())
        return true;
    if (error) {
        *error = {QStringLiteral("File"), int(file.error()),
                  QStringLiteral("The file “%1” could not be written: %2.")
                      .arg(displayName(path), file.errorString()),
                  path};
    }
    return false;
}

bool makeFolder(const QString &path, Error *error)
{
    if (QDir().mkpath(path))
        return true;
    return fail(error, QStringLiteral("The folder “%1” could not be made"), path, errno ? errno : EIO);
}

} // namespace platform
