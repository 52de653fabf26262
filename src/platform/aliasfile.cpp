// SPDX-License-Identifier: MIT
#include "platform/aliasfile.h"

#include "platform/files.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr QByteArrayView mark = "pondWicket alias ";
constexpr QByteArrayView version = "1";
constexpr qsizetype maxFolders = 64; // keeps the longest record far below the largest size

constexpr std::array<std::pair<FileKind, QByteArrayView>, 3> kindWords = {
    {{FileKind::File, "file"}, {FileKind::Folder, "folder"}, {FileKind::Other, "other"}}};

std::nullopt_t damaged(Error *error, const QString &reason)
{
    if (error)
        *error = {QStringLiteral("Alias"), 1, reason, QString()};
    return std::nullopt;
}

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isHex(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), isHexDigit);
}

bool isTime(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return (c >= '0' && c <= '9') || c == '.' || c == '-'; });
}

QByteArray encoded(const QByteArray &path)
{
    return path.toPercentEncoding("/");
}

/// Nothing when a "%" is not followed by two digits or a NUL comes out, which would end the path too early.
std::optional<QByteArray> decoded(QByteArrayView text)
{
    for (qsizetype i = text.indexOf('%'); i >= 0; i = text.indexOf('%', i + 1)) {
        if (i + 2 >= text.size() || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2]))
            return std::nullopt;
    }
    QByteArray bytes = QByteArray::fromPercentEncoding(text.toByteArray());
    if (bytes.contains('\0'))
        return std::nullopt;
    return bytes;
}

bool readPath(QByteArrayView value, QByteArray &path)
{
    const std::optional<QByteArray> bytes = decoded(value);
    path = bytes.value_or(QByteArray());
    return bytes.has_value();
}

bool readNumber(QByteArrayView value, quint64 &number)
{
    bool ok = false;
    number = value.toULongLong(&ok);
    return ok;
}

bool readSize(QByteArrayView value, qint64 &size)
{
    bool ok = false;
    size = value.toLongLong(&ok);
    return ok;
}

bool readTime(QByteArrayView value, QByteArray &time)
{
    time = value.toByteArray();
    return isTime(value);
}

bool readHandle(QByteArrayView value, QByteArray &handle)
{
    handle = value.toByteArray();
    return isHex(value);
}

bool readKind(QByteArrayView value, FileKind &kind)
{
    for (const auto &[candidate, word] : kindWords) {
        if (word == value) {
            kind = candidate;
            return true;
        }
    }
    return false;
}

/// "inode birth handle", with "-" for what is not known.
bool readFolder(QByteArrayView value, QList<FileIdentity> &folders)
{
    const QList<QByteArray> parts = value.toByteArray().split(' ');
    FileIdentity folder;
    if (parts.size() != 3 || !readNumber(parts.at(0), folder.inode))
        return false;
    if (parts.at(1) != "-" && !readTime(parts.at(1), folder.birth))
        return false;
    if (parts.at(2) != "-" && !readHandle(parts.at(2), folder.handle))
        return false;
    folders.append(folder);
    return true;
}

/// False when the value of a known key is none of its values. Unknown keys are left to later versions.
bool readField(QByteArrayView key, QByteArrayView value, AliasRecord &record)
{
    if (key == "path")
        return readPath(value, record.path);
    if (key == "relative")
        return readPath(value, record.relativePath);
    if (key == "kind")
        return readKind(value, record.kind);
    if (key == "device")
        return readNumber(value, record.device);
    if (key == "filesystem")
        return readNumber(value, record.fileSystem);
    if (key == "inode")
        return readNumber(value, record.identity.inode);
    if (key == "birth")
        return readTime(value, record.identity.birth);
    if (key == "handle")
        return readHandle(value, record.identity.handle);
    if (key == "size")
        return readSize(value, record.size);
    if (key == "changed")
        return readTime(value, record.changed);
    if (key == "folder")
        return readFolder(value, record.folders);
    return true;
}

QByteArray relativePath(const QByteArray &target, const QByteArray &folder)
{
    const QList<QByteArray> to = target.split('/');
    const QList<QByteArray> from = folder.split('/');
    qsizetype common = 0;
    while (common < to.size() - 1 && common < from.size() && to.at(common) == from.at(common))
        ++common;
    const qsizetype up = folder == "/" ? 0 : from.size() - common;
    return QByteArray("../").repeated(up) + to.sliced(common).join('/');
}

} // namespace

bool hasAliasMark(QByteArrayView bytes)
{
    if (!bytes.startsWith(mark))
        return false;
    qsizetype end = mark.size();
    while (end < bytes.size() && bytes[end] >= '0' && bytes[end] <= '9')
        ++end;
    if (end == mark.size())
        return false;
    return end == bytes.size() || bytes[end] == '\n' || bytes[end] == '\r';
}

std::optional<AliasRecord> parseAlias(QByteArrayView text, Error *error)
{
    if (text.size() > maxAliasFileSize)
        return damaged(error, QStringLiteral("The alias file is too large."));
    if (!hasAliasMark(text))
        return damaged(error, QStringLiteral("The file is not an alias file."));
    AliasRecord record;
    int number = 0;
    while (!text.isEmpty()) {
        const qsizetype end = text.indexOf('\n');
        QByteArrayView line = text.first(end < 0 ? text.size() : end);
        text = text.sliced(end < 0 ? text.size() : end + 1);
        if (line.endsWith('\r'))
            line.chop(1);
        if (++number == 1) {
            if (line.sliced(mark.size()) != version)
                return damaged(error, QStringLiteral("The alias file is of a version that is not known."));
            continue;
        }
        const qsizetype colon = line.indexOf(':');
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (colon < 0 || !readField(line.first(colon), line.sliced(colon + 1).trimmed(), record))
            return damaged(error, QStringLiteral("Line %1 of the alias file is damaged.").arg(number));
    }
    if (!record.path.startsWith('/'))
        return damaged(error, QStringLiteral("The alias file names no absolute path."));
    return record;
}

QByteArray serialiseAlias(const AliasRecord &record)
{
    QByteArray text = mark.toByteArray() + version.toByteArray() + '\n';
    const auto line = [&text](const char *key, const QByteArray &value) {
        if (!value.isEmpty())
            text += QByteArray(key) + ": " + value + '\n';
    };
    line("path", encoded(record.path));
    line("relative", encoded(record.relativePath));
    for (const auto &[kind, word] : kindWords) {
        if (record.kind == kind)
            line("kind", word.toByteArray());
    }
    line("device", QByteArray::number(record.device));
    line("filesystem", QByteArray::number(record.fileSystem));
    line("inode", QByteArray::number(record.identity.inode));
    line("birth", record.identity.birth);
    line("handle", record.identity.handle);
    line("size", QByteArray::number(record.size));
    line("changed", record.changed);
    const auto orDash = [](const QByteArray &value) { return value.isEmpty() ? QByteArray("-") : value; };
    for (const FileIdentity &folder : record.folders)
        line("folder",
             QByteArray::number(folder.inode) + ' ' + orDash(folder.birth) + ' ' + orDash(folder.handle));
    return text;
}

std::optional<AliasRecord> describeTarget(const QByteArray &path, const QByteArray &aliasFile, Error *error)
{
    const QByteArray target = absolutePath(path, "/"); // without a folder's slash at the end
    struct stat status;
    const std::optional<FileIdentity> identity = identify(target);
    if (!identity || ::stat(target.constData(), &status) != 0) {
        if (error) {
            const QString text = QFile::decodeName(target);
            *error = Error::fromErrno(
                QStringLiteral("The file “%1” could not be found").arg(displayName(text)), errno, text);
        }
        return std::nullopt;
    }
    AliasRecord record;
    record.path = target;
    record.relativePath = relativePath(target, parentPath(aliasFile));
    record.kind = fileKind(status.st_mode);
    record.device = status.st_dev;
    record.fileSystem = fileSystemId(target);
    record.identity = *identity;
    record.size = status.st_size;
    record.changed = QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.'
        + QByteArray::number(qint64(status.st_mtim.tv_nsec)).rightJustified(9, '0');
    for (QByteArray folder = target; folder != "/" && record.folders.size() < maxFolders;) {
        folder = parentPath(folder);
        const std::optional<FileIdentity> above = identify(folder);
        if (!above || ::stat(folder.constData(), &status) != 0 || status.st_dev != record.device)
            break;
        record.folders.append(*above);
    }
    return record;
}

bool writeAliasFile(const QByteArray &target, const QByteArray &aliasFile, Error *error)
{
    const std::optional<AliasRecord> record = describeTarget(target, aliasFile, error);
    if (record && !aliasFile.startsWith('/')) {
        if (error)
            *error = Error::fromErrno(QStringLiteral("The alias file could not be written"), ENOENT, {});
        return false;
    }
    return record && writeAtomically(QFile::decodeName(aliasFile), serialiseAlias(*record), error, 0600);
}

bool isAliasFile(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return false;
    struct stat status;
    char start[64];
    ssize_t length = -1;
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode))
        length = ::pread(file, start, sizeof start, 0);
    ::close(file);
    return length > 0 && hasAliasMark(QByteArrayView(start, length));
}

QByteArray absolutePath(const QByteArray &path, const QByteArray &folder)
{
    QList<QByteArray> kept;
    for (const QByteArray &part : (path.startsWith('/') ? path : folder + '/' + path).split('/')) {
        if (part == "..")
            kept.isEmpty() ? void() : kept.removeLast();
        else if (!part.isEmpty() && part != ".")
            kept.append(part);
    }
    return '/' + kept.join('/');
}

QByteArray parentPath(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : path.first(slash);
}

} // namespace platform
