// SPDX-License-Identifier: MIT
#include "model/safetycopies.h"

#include "platform/files.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>

#include <algorithm>

namespace model {

namespace {

constexpr qsizetype keptCopies = 10;

void warn(const platform::Error &error)
{
    qWarning().noquote() << "No safety copy of the settings:" << error.fullDescription();
}

/// Removes all but the newest copies of the kind. Their dated names sort by age, but for those from after
/// `now`: made by a clock that was wrong, they go first, and never the copy that was just made.
void prune(const QString &folder, const QString &kind, const QString &now)
{
    QStringList names = QDir(folder).entryList({kind + QStringLiteral("-????????T?????????Z.json")},
                                               QDir::Files, QDir::Name | QDir::Reversed);
    std::stable_partition(names.begin(), names.end(), [&now](const QString &name) { return name <= now; });
    for (const QString &name : names.mid(keptCopies))
        QFile::remove(folder + u'/' + name);
}

void keepDated(const QString &folder, const QString &kind, const QString &source)
{
    if (!platform::itemExists(source))
        return;
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmsszzz'Z'"));
    const QString name = kind + u'-' + stamp + QStringLiteral(".json");
    platform::Error error;
    if (!platform::makeFolder(folder, &error) || !platform::copyFile(source, folder + u'/' + name, &error)) {
        warn(error);
        return;
    }
    prune(folder, kind, name);
}

} // namespace

QString lastGoodPath(const QString &stateDirectory)
{
    return stateDirectory + QStringLiteral("/last-good.json");
}

void keepLastGood(const QString &stateDirectory, QByteArrayView bytes)
{
    const auto write = [&](platform::Error *error) {
        return platform::writeBySwapping(lastGoodPath(stateDirectory),
                                         stateDirectory + QStringLiteral("/save-before.json"), bytes, error);
    };
    // Usually the folder is there; it is asked for only when it is not.
    platform::Error error;
    if (!write(&error) && (!platform::makeFolder(stateDirectory, &error) || !write(&error)))
        warn(error);
}

void keepReplaced(const QString &stateDirectory, const QString &path)
{
    keepDated(stateDirectory, QStringLiteral("replaced"), path);
    // If the file at `path` is in pieces because a save was cut short, this is the whole one, and the saves
    // of the first run are about to write over it.
    keepDated(stateDirectory, QStringLiteral("last-good"), lastGoodPath(stateDirectory));
}

} // namespace model
