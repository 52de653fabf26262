// SPDX-License-Identifier: MIT
#include "platform/aliasresolver.h"

#include "platform/aliasfile.h"
#include "platform/files.h"

#include <QDir>
#include <QFile>

#include <cerrno>

namespace platform {

namespace {

constexpr int maxSteps = 16;

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
        *error = {QStringLiteral("Alias"), 1, reason, QFile::decodeName(aliasFile)};
    return std::nullopt;
}

/// The target of one alias file.
std::optional<QByteArray> followRecord(const AliasRecord &record, const QByteArray &aliasFile, Error *error)
{
    struct stat status;
    if (::stat(record.path.constData(), &status) == 0
        && (record.kind == FileKind::Any || record.kind == fileKind(status.st_mode)))
        return record.path;
    return broken(error, aliasFile, QStringLiteral("The target of the alias could not be found."));
}

} // namespace

std::optional<AliasTarget> resolveAliasTarget(const QByteArray &path, Error *error)
{
    if (path.isEmpty() || path.contains('\0'))
        return notFound(error, path, path.isEmpty() ? ENOENT : EINVAL);
    QByteArray current = path.startsWith('/') ? path : QFile::encodeName(QDir::currentPath()) + '/' + path;
    for (int step = 0; step <= maxSteps; ++step) {
        struct stat status;
        if (::stat(current.constData(), &status) != 0)
            return notFound(error, current, errno);
        if (!S_ISREG(status.st_mode) || !isAliasFile(current))
            return AliasTarget{current, S_ISDIR(status.st_mode)};
        const std::optional<QByteArray> text =
            readWholeFile(QFile::decodeName(current), error, maxAliasFileSize);
        if (!text)
            return std::nullopt;
        const std::optional<AliasRecord> record = parseAlias(*text, error);
        if (!record) {
            if (error)
                error->path = QFile::decodeName(current);
            return std::nullopt;
        }
        const std::optional<QByteArray> next = followRecord(*record, current, error);
        if (!next)
            return std::nullopt;
        current = *next;
    }
    return broken(error, path, QStringLiteral("The alias leads through too many others."));
}

std::optional<QString> resolveAlias(const QString &path, Error *error)
{
    const std::optional<AliasTarget> target = resolveAliasTarget(QFile::encodeName(path), error);
    return target ? std::optional(QFile::decodeName(target->path)) : std::nullopt;
}

} // namespace platform
