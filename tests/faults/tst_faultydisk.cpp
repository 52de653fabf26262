// SPDX-License-Identifier: MIT
// Every call that changes the disk fails once, or from some call on, and nothing of the user's may be lost.
// The calls are those of this program's own, which stand before the C library's.
#include "links/linkkind.h"
#include "links/tilealias.h"
#include "model/safetycopies.h"
#include "model/settingsjson.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "strip/startup.h"
#include "support/files.h"
#include "support/stdoutcapture.h"
#include "themes/iconstore.h"
#include "themes/themestore.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstdarg>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

using namespace support;

namespace {

struct Faults
{
    bool on = false;
    int error = 0; ///< 0: writes take only a part of the bytes, and nothing fails
    int first = 0; ///< the call that fails
    bool forGood = false; ///< and all after it
    int calls = 0;

    bool strikes()
    {
        if (!on)
            return false;
        const int call = calls++;
        if (error == 0 || (forGood ? call < first : call != first))
            return false;
        errno = error;
        return true;
    }
};

thread_local Faults faults;
thread_local time_t clockError = 0; // seconds

} // namespace

extern "C" {

ssize_t write(int file, const void *bytes, size_t size)
{
    if (file > STDERR_FILENO) {
        if (faults.strikes())
            return -1;
        if (faults.on && faults.error == 0 && size > 1)
            size = size / 2;
    }
    return ::syscall(SYS_write, file, bytes, size);
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (flags & O_CREAT && faults.strikes())
        return -1;
    return int(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

/// A call that no signal interrupts.
#define PW_FAULTY(name, number, parameters, ...)                                                             \
    int name parameters noexcept                                                                             \
    {                                                                                                        \
        const bool fails = faults.error != EINTR && faults.strikes();                                        \
        return fails ? -1 : int(::syscall(number, __VA_ARGS__));                                             \
    }
PW_FAULTY(ftruncate, SYS_ftruncate, (int file, off_t size), file, size)
PW_FAULTY(fchmod, SYS_fchmod, (int file, mode_t mode), file, mode)
PW_FAULTY(mkdir, SYS_mkdir, (const char *path, mode_t mode), path, mode)
PW_FAULTY(rename, SYS_rename, (const char *from, const char *to), from, to)
PW_FAULTY(renameat2, SYS_renameat2,
          (int fromFolder, const char *from, int toFolder, const char *to, unsigned flags), fromFolder, from,
          toFolder, to, flags)

/// The clock that a user sets, as the toolkit reads it.
int gettimeofday(timeval *time, void *) noexcept
{
    const int result = int(::syscall(SYS_gettimeofday, time, nullptr));
    time->tv_sec += clockError;
    return result;
}

} // extern "C"

namespace {

/// A home as a user has it, made anew for each fault.
struct World
{
    explicit World(bool isFirstRun)
    {
        make(config.documentDirectory() + u'/');
        config.setAvailableThemes({QStringLiteral("1984")});
        if (isFirstRun)
            return;
        model::addTile(config);
        make(notes(), "before");
        model::saveSettings(config);
    }

    QString notes() const
    {
        return model::tileFilePath(config.tileItems().constFirst(), QStringLiteral("Notes.txt"));
    }
    QByteArray settings() const { return bytesOf(model::settingsFileURL(config)); }
    QByteArray lastGood() const { return bytesOf(model::lastGoodPath(config.stateDirectory())); }
    QTemporaryDir folder;
    Config config{folder.filePath(QStringLiteral("Documents")), folder.filePath(QStringLiteral("state"))};
};

/// The superuser reads everything, and so becomes nobody for a while.
struct Unprivileged
{
    ~Unprivileged() { result = ::seteuid(::getuid()); }
    int result = ::geteuid() == 0 ? ::seteuid(65534) : 0;
};

const QByteArray newNote(3000, 'n');

using Deed = void (*)(World &);
const Deed save = [](World &world) {
    world.config.setShowsDate(true);
    model::saveSettings(world.config);
};
const Deed addTile = [](World &world) { model::addTile(world.config); };
const Deed linkFile = [](World &world) {
    links::linkFile(world.config, world.config.tileItems().constFirst().id, "/usr/bin/env");
};
const Deed writeNote = [](World &world) { platform::writeAtomically(world.notes(), newNote, nullptr); };
const Deed startFirst = [](World &world) { strip::loadOrCreateSettings(world.config); };

} // namespace

class TestFaultyDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsLost_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<bool>("forGood");
        QTest::newRow("disk full") << ENOSPC << true;
        QTest::newRow("read-only from now on") << EROFS << true;
        QTest::newRow("no more files") << EMFILE << false;
        QTest::newRow("one failure of the device") << EIO << false;
        QTest::newRow("one interruption") << EINTR << false;
        QTest::newRow("short writes") << 0 << false;
    }

    void nothingIsLost()
    {
        QFETCH(const int, error);
        QFETCH(const bool, forGood);
        const bool isHarmless = error == 0 || error == EINTR;
        int struck = 0;
        for (const Deed deed : {save, addTile, linkFile, writeNote, startFirst}) {
            for (int first = 0;; ++first) {
                World world(deed == startFirst);
                const SettingsData before = world.config.stored();
                const QByteArray oldText = model::settingsToJson(before);
                StdoutCapture capture;
                faults = {true, error, first, forGood};
                deed(world);
                const int calls = std::exchange(faults, Faults()).calls;
                const QStringList lines = capture.lines();
                ++struck;

                const QByteArray newText = model::settingsToJson(world.config.stored());
                const QByteArray settings = world.settings();
                const bool isSaved = settings == newText;
                if (deed == writeNote) {
                    const QByteArray note = bytesOf(world.notes());
                    QVERIFY(note == newNote || (!isHarmless && note == "before"));
                    QCOMPARE(namesIn(world.notes().section(u'/', 0, -2)).size(), 1);
                } else if (deed != startFirst) {
                    const QByteArray lastGood = world.lastGood();
                    QVERIFY(isSaved || settings == oldText || lastGood == oldText || lastGood == newText);
                }
                QVERIFY2(isSaved || !lines.isEmpty(), "a save that failed says nothing");
                QVERIFY(!isHarmless || (isSaved && (lines.isEmpty() || deed == startFirst)));

                // Once the disk works again, so does everything else.
                if (deed == startFirst) {
                    Config next(world.config.documentDirectory(), world.config.stateDirectory());
                    next.setAvailableThemes(world.config.availableThemes());
                    strip::loadOrCreateSettings(next);
                    world.config.setAvailableThemes(next.availableThemes());
                    world.config.setTileItems(next.tileItems());
                } else {
                    model::saveSettings(world.config);
                }
                capture.lines();
                QVERIFY(world.settings() == model::settingsToJson(world.config.stored()));
                if (first >= calls || error == 0)
                    break;
            }
        }
        qInfo("%d faults", struck);
    }

    /// Each folder of ours goes while the program runs, and a file or a dangling link may take its place, or
    /// it can be entered no more.
    void lostFoldersHurtNothingElse()
    {
        const Unprivileged user;
        enum Stands { Nothing, File, Link, Locked };
        for (const QString &lost : {u"/Tiles/*"_qs, u"/Tiles"_qs, u"/Themes"_qs, QString()}) {
            for (const Stands stands : {Nothing, File, Link, Locked}) {
                World world(true);
                startFirst(world);
                const QString folder = lost.endsWith(u'*') ? world.notes().section(u'/', 0, -2)
                                                           : model::applicationFolder(world.config) + lost;
                const QByteArray before = world.settings();
                QVERIFY(stands == Locked ? ::chmod(QFile::encodeName(folder).constData(), 0) == 0
                                         : QDir(folder).removeRecursively());
                if (stands == File)
                    make(folder, "kept");
                else if (stands == Link)
                    QVERIFY(QFile::link(folder + u".gone"_qs, folder));
                StdoutCapture capture;
                writeNote(world);
                linkFile(world);
                const TileMenuItem link = world.config.tileItems().constFirst().tileMenuItems.constLast();
                const bool isLinked = links::isAlias(link);
                world.config.setCurrentTheme(u"1984"_qs);
                const bool isDrawn = !themes::tileImage(world.config).isNull()
                    && !themes::iconImage(world.config, u"default"_qs).isNull();
                model::addTile(world.config);
                const QString lines = capture.lines().join(u'\n');
                QVERIFY(stands != Locked || ::chmod(QFile::encodeName(folder).constData(), 0700) == 0);
                const bool isSaved = world.settings() == model::settingsToJson(world.config.stored());
                const QByteArray what = (folder + QString::number(stands) + lines).toUtf8();
                QVERIFY2(isDrawn && world.config.tileItems().size() == 4 && link.itemName == u"env",
                         what.constData());
                QVERIFY2(isLinked == (lost == u"/Themes"), what.constData());
                QVERIFY2(isLinked != lines.contains(u"Failed to create alias: "), what.constData());
                QVERIFY2(isSaved == (!lost.isEmpty() || stands == Nothing), what.constData());
                QVERIFY2(isSaved != lines.contains(u"Failed to save JSON data: "), what.constData());
                QVERIFY2(lost != u"/Tiles" || lines.contains(u"The folder “") != (stands == Nothing),
                         what.constData());
                QVERIFY2(stands != File || bytesOf(folder) == "kept", what.constData());
                QVERIFY2(stands != Link || !platform::itemExists(folder), what.constData());
                QVERIFY2(stands != Locked || isSaved || world.settings() == before, what.constData());
            }
        }
    }

    void unreadableSettingsStayAsTheyAre()
    {
        const Unprivileged user;
        for (const QString &locked : {u"/pondWicket-settings.json"_qs, QString()}) {
            World world(true);
            startFirst(world);
            const QByteArray path = QFile::encodeName(model::applicationFolder(world.config) + locked);
            const QByteArray before = world.settings();
            QVERIFY(::chmod(path.constData(), 0) == 0);
            StdoutCapture capture;
            Config next(world.config.documentDirectory(), world.config.stateDirectory());
            strip::loadOrCreateSettings(next);
            QVERIFY(capture.lines().join(u'\n').contains(u"Failed to save JSON data: "));
            QVERIFY(::chmod(path.constData(), 0700) == 0);
            QVERIFY2(next.tileItems().size() == 3 && world.settings() == before, path.constData());
        }
    }

    /// Copies of replaced settings from a clock ahead counted as the newest, and those made since went at
    /// once.
    void jumpingClockLosesNoCopy()
    {
        World world(false);
        const QDir copies(world.config.stateDirectory());
        for (int round = 0; round < 24; ++round) {
            clockError = (round < 12 ? 20 : round < 18 ? 0 : -20) * 365 * 24 * 3600;
            const QByteArray broken = "broken " + QByteArray::number(round);
            make(model::settingsFileURL(world.config), broken);
            const StdoutCapture silent;
            startFirst(world);
            QByteArrayList kept;
            for (const QString &name : copies.entryList({u"replaced-*"_qs}))
                kept += bytesOf(copies.filePath(name));
            QVERIFY(kept.contains(broken) && kept.size() <= 10);
        }
        clockError = 0;
    }
};

QTEST_MAIN(TestFaultyDisk)
#include "tst_faultydisk.moc"
