// SPDX-License-Identifier: MIT
#include "platform/aliasresolver.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace platform;

namespace {

using Bytes = QByteArray;

/// A home folder with a documents folder and an alias of one target, and a resolver for it.
class Home
{
public:
    Home()
    {
        for (const char *folder : {"Documents/Tile", "work/project/part", "other/deep"})
            QDir().mkpath(m_folder.filePath(QLatin1String(folder)));
        write("work/project/target", "text");
        makeAlias("work/project/target");
        startAnew();
    }

    Bytes at(const Bytes &name) const { return QFile::encodeName(m_folder.path()) + '/' + name; }
    Bytes alias() const { return at("Documents/Tile/A"); }

    void write(const Bytes &name, const Bytes &text) const
    {
        QFile file(QFile::decodeName(at(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("cannot write %s", name.constData());
    }
    void move(const Bytes &from, const Bytes &to) const
    {
        if (::rename(at(from).constData(), at(to).constData()) != 0)
            qFatal("cannot move %s", from.constData());
    }
    void makeFolder(const Bytes &name) const { ::mkdir(at(name).constData(), 0700); }
    void remove(const Bytes &name) const { QFile::remove(QFile::decodeName(at(name))); }
    void makeAlias(const Bytes &target) const
    {
        if (!writeAliasFile(at(target), alias(), nullptr))
            qFatal("cannot make the alias");
    }
    /// A program that has not seen the target yet.
    void startAnew()
    {
        resolver = std::make_unique<AliasResolver>(AliasResolver::Places{at(""), {at("Documents"), at("")}});
    }

    /// The name below the home folder to which the alias leads; empty when it is broken.
    Bytes found() const
    {
        const std::optional<AliasTarget> place = resolver->resolve(alias(), nullptr);
        return place ? place->path.sliced(at("").size()) : Bytes();
    }
    Bytes foundByWorker() const
    {
        const Bytes name = found();
        resolver->waitForSearch();
        return name.isEmpty() ? found() : name;
    }

    std::unique_ptr<AliasResolver> resolver;

private:
    QTemporaryDir m_folder;
};

} // namespace

class TestAliasMoves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("XDG_DATA_HOME", "/nowhere"); }
    void followsWhatWasMoved();
    void savedByReplacingThenMoved();
    void deletedFileIsLetGo();
    void tellsWhenTheWorkerFinds();
    void copiedTogether();
    void reusedInodeIsAnotherFile();
    void targetOnAnotherFileSystem();
    void pulledOutDiskIsNotSearchedFor();
    void aliasOfAlias();
    void loopIsBroken();
    void openedLinkIsRewritten();
    void drawingNeverWrites();
    void automountIsNotTouched();
    void manyTargetsStayBelowTheLimit();
};

namespace {

/// True when this process has a file open whose path, in the kernel's words, ends so.
bool isOpen(const char *end)
{
    const QDir open(QStringLiteral("/proc/self/fd"));
    for (const QFileInfo &file : open.entryInfoList(QDir::AllEntries | QDir::System)) {
        if (file.symLinkTarget().endsWith(QLatin1String(end)))
            return true;
    }
    return false;
}

struct Row
{
    const char *name;
    Bytes whileRunning;
    Bytes whileNotRunning;
    std::function<void(const Home &)> change;
};

/// A change of one step, told the same way with and without the program.
Row moved(const char *from, const char *to, const Bytes &expected)
{
    return {to, expected, expected, [from, to](const Home &home) { home.move(from, to); }};
}

const Bytes target = "work/project/target";

const Row rows[] = {
    {"nothing", target, target, [](const Home &) {}},
    moved("work/project/target", "work/project/new", "work/project/new"),
    moved("work/project/target", "work/target", "work/target"),
    moved("work/project/target", "other/deep/x", "other/deep/x"),
    moved("work/project", "work/new", "work/new/target"),
    moved("work/project", "other/deep/p", "other/deep/p/target"),
    moved("work", "new", "new/project/target"),
    {"parent and target renamed", "work/new/x", "work/new/x",
     [](const Home &home) {
         home.move("work/project", "work/new");
         home.move("work/new/target", "work/new/x");
     }},
    {"saved by replacing", target, target,
     [](const Home &home) {
         home.write("work/project/.save", "new text");
         home.move("work/project/.save", target);
     }},
    // The old file now carries the backup's name; the new one under the old name is what the user works on.
    {"replaced, with a backup", target, target,
     [](const Home &home) {
         home.move(target, target + '~');
         home.write(target, "new text");
     }},
    {"deleted, new file of the same name", target, target,
     [](const Home &home) {
         home.remove(target);
         home.write(target, "other");
     }},
    {"deleted, same name elsewhere", "", "",
     [](const Home &home) {
         home.remove(target);
         home.write("work/target", "text");
         home.write("other/target", "text");
     }},
    {"folder in its place", "work/project/new", "work/project/new",
     [](const Home &home) {
         home.move(target, "work/project/new");
         home.makeFolder(target);
     }},
    {"to the Trash of another file system", "", "",
     [](const Home &home) {
         const Bytes trash = ".Trash-" + Bytes::number(::getuid());
         home.makeFolder(trash);
         home.move(target, trash + "/target");
     }},
    {"into a hidden folder", ".hidden/x", "",
     [](const Home &home) {
         home.makeFolder(".hidden");
         home.move(target, ".hidden/x");
     }},
    {"parent in a cache folder", "other/deep/p/target", "other/deep/p/target",
     [](const Home &home) {
         home.write("other/deep/CACHEDIR.TAG", "");
         home.move("work/project", "other/deep/p");
     }},
    {"below a cache folder", "other/deep/x/target", "",
     [](const Home &home) {
         home.makeFolder("other/deep/x");
         home.write("other/deep/CACHEDIR.TAG", "");
         home.move(target, "other/deep/x/target");
     }},
};

} // namespace

void TestAliasMoves::followsWhatWasMoved()
{
    for (const Row &row : rows) {
        const Home running;
        QCOMPARE(running.found(), target);
        row.change(running);
        QVERIFY2(running.found() == row.whileRunning, row.name);
        Home stopped;
        row.change(stopped);
        stopped.startAnew();
        QVERIFY2(stopped.foundByWorker() == row.whileNotRunning, row.name);
    }
}

void TestAliasMoves::savedByReplacingThenMoved()
{
    const Home home;
    QCOMPARE(home.found(), target);
    home.write("work/project/.save", "new text");
    home.move("work/project/.save", target);
    QVERIFY(!isOpen("/target"));
    QTRY_VERIFY(isOpen("/target"));
    home.move(target, "other/deep/x");
    QCOMPARE(home.found(), Bytes("other/deep/x"));
}

/// A held file kept its room on the disk after it was deleted.
void TestAliasMoves::deletedFileIsLetGo()
{
    const Home home;
    QCOMPARE(home.found(), target);
    home.remove(target);
    QVERIFY(isOpen("/target (deleted)"));
    QTRY_VERIFY(!isOpen("/target (deleted)"));
}

void TestAliasMoves::tellsWhenTheWorkerFinds()
{
    Home home;
    home.write("work/project/part/low", "text");
    home.makeAlias("work/project/part/low");
    home.move("work/project/part/low", "other/deep/low"); // out of sight of the nearest folders
    home.startAnew();
    QSignalSpy found(home.resolver.get(), &AliasResolver::targetFound);
    QCOMPARE(home.found(), Bytes());
    QVERIFY(found.wait(30000));
    QCOMPARE(home.found(), Bytes("other/deep/low"));
}

void TestAliasMoves::copiedTogether()
{
    // A documents folder restored from a copy: nothing has its old identity any more.
    Home home;
    home.write("Documents/target", "text");
    home.makeAlias("Documents/target");
    QDir().mkpath(QFile::decodeName(home.at("restored/Tile")));
    for (const char *name : {"/target", "/Tile/A"}) {
        QFile::copy(QFile::decodeName(home.at(Bytes("Documents") + name)),
                    QFile::decodeName(home.at(Bytes("restored") + name)));
        home.remove(Bytes("Documents") + name);
    }
    home.startAnew();
    const std::optional<AliasTarget> place = home.resolver->resolve(home.at("restored/Tile/A"), nullptr);
    QVERIFY(place);
    QCOMPARE(place->path, home.at("restored/target"));
}

void TestAliasMoves::reusedInodeIsAnotherFile()
{
    Home home;
    struct stat before;
    QCOMPARE(::stat(home.at(target).constData(), &before), 0);
    home.remove(target);
    bool reused = false;
    for (int i = 0; i < 64 && !reused; ++i) {
        const Bytes name = "work/project/new" + Bytes::number(i);
        home.write(name, "");
        struct stat after;
        reused = ::stat(home.at(name).constData(), &after) == 0 && after.st_ino == before.st_ino;
    }
    if (!reused)
        QSKIP("this file system gives out new inode numbers");
    home.startAnew();
    QCOMPARE(home.foundByWorker(), Bytes());
}

void TestAliasMoves::targetOnAnotherFileSystem()
{
    QTemporaryDir other(QStringLiteral("/dev/shm/aliasXXXXXX"));
    struct stat here;
    struct stat there;
    const Home home;
    const Bytes folder = QFile::encodeName(other.path());
    if (!other.isValid() || ::stat(folder.constData(), &there) != 0
        || ::stat(home.at("").constData(), &here) != 0 || here.st_dev == there.st_dev)
        QSKIP("no second file system");
    QVERIFY(QFile(other.filePath(QStringLiteral("target"))).open(QIODevice::WriteOnly));
    QVERIFY(writeAliasFile(folder + "/target", home.alias(), nullptr));
    QVERIFY(home.resolver->resolve(home.alias(), nullptr));
    QVERIFY(QFile::rename(other.filePath(QStringLiteral("target")), other.filePath(QStringLiteral("new"))));
    // Nothing is held there, but the recorded folder still tells.
    std::optional<AliasTarget> place;
    QTRY_VERIFY((place = home.resolver->resolve(home.alias(), nullptr)));
    QCOMPARE(place->path, folder + "/new");
}

void TestAliasMoves::pulledOutDiskIsNotSearchedFor()
{
    Home home;
    home.write("work/project/part/low", "text");
    home.makeAlias("work/project/part/low");
    QFile file(QFile::decodeName(home.alias()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QByteArray text = file.readAll();
    for (const char *key : {"device: ", "filesystem: "})
        text.replace(key, Bytes(key) + "1\nwas: ");
    text.replace("relative: ", "was: ");
    QVERIFY(parseAlias(text, nullptr));
    home.write("Documents/Tile/A", text);
    home.move("work/project/part/low", "other/deep/low");
    home.startAnew();
    QCOMPARE(home.foundByWorker(), Bytes());
}

void TestAliasMoves::aliasOfAlias()
{
    const Home home;
    QVERIFY(writeAliasFile(home.alias(), home.at("A0"), nullptr));
    for (int i = 1; i < 17; ++i)
        QVERIFY(
            writeAliasFile(home.at("A" + Bytes::number(i - 1)), home.at("A" + Bytes::number(i)), nullptr));
    home.move(target, "work/project/new");
    QCOMPARE(home.foundByWorker(), Bytes("work/project/new"));
    const std::optional<AliasTarget> place = home.resolver->resolve(home.at("A14"), nullptr);
    QVERIFY(place);
    QCOMPARE(place->path, home.at("work/project/new"));
    Error error;
    QVERIFY(!home.resolver->resolve(home.at("A15"), &error));
    QVERIFY(error.reason.contains(QLatin1String("too many")));
}

void TestAliasMoves::loopIsBroken()
{
    const Home home;
    home.write("B", "pondWicket alias 1\npath: " + home.at("C") + '\n');
    home.write("C", "pondWicket alias 1\npath: " + home.at("B") + '\n');
    Error error;
    QVERIFY(!home.resolver->resolve(home.at("B"), &error));
    QVERIFY(!error.reason.isEmpty());
    home.resolver->refresh(home.at("B")); // ends
}

void TestAliasMoves::openedLinkIsRewritten()
{
    Home home;
    home.move(target, "work/project/new");
    QCOMPARE(home.foundByWorker(), Bytes("work/project/new"));
    home.resolver->refresh(home.alias());
    // Without the rewriting this step would lead out of every recorded folder.
    home.move("work/project", "other/deep/p");
    home.move("other", "gone");
    home.startAnew();
    QCOMPARE(home.foundByWorker(), Bytes("gone/deep/p/new"));
    struct stat status;
    QCOMPARE(::stat(home.alias().constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0600);
}

void TestAliasMoves::drawingNeverWrites()
{
    const Home home;
    struct stat before;
    struct stat after;
    home.move(target, "work/project/new");
    QCOMPARE(::stat(home.alias().constData(), &before), 0);
    QCOMPARE(home.foundByWorker(), Bytes("work/project/new"));
    QCOMPARE(::stat(home.alias().constData(), &after), 0);
    QCOMPARE(FileStamp::of(after), FileStamp::of(before));
}

void TestAliasMoves::automountIsNotTouched()
{
    const Home home;
    QVERIFY(QFile::link(QFile::decodeName(home.at("work")), QFile::decodeName(home.at("link"))));
    const Bytes place = home.at("work").replace(' ', "\\040");
    const Bytes table =
        "21 1 8:1 / / rw - ext4 /dev/sda rw\n22 21 0:9 / " + place + " rw - autofs systemd rw\n";
    const auto resolves = [&home](const Bytes &text, const Bytes &name) {
        AliasResolver resolver({home.at(""), {}}, std::make_unique<MountTable>(text));
        return resolver.resolve(home.at(name), nullptr).has_value();
    };
    QVERIFY(!resolves(table, target));
    QVERIFY(!resolves(table, "link/project/target"));
    QVERIFY(!resolves(table, "Documents/Tile/A"));
    QVERIFY(resolves(table, "other"));
    // Once something is mounted there it hides the automounter.
    const Bytes mounted = table + "23 22 0:10 / " + place + " rw - ext4 /dev/sdb rw\n";
    QVERIFY(resolves(mounted, "link/project/target"));
    // A network that answers is as good as a disk.
    // (On a busy machine not always at once.)
    const Bytes network = table + "23 22 0:10 / " + place + " rw - nfs4 server:/ rw\n";
    QTRY_VERIFY(resolves(network, "Documents/Tile/A"));
}

void TestAliasMoves::manyTargetsStayBelowTheLimit()
{
    const Home home;
    LiveHints hints(home.at(""));
    for (int i = 0; i < LiveHints::maxCount + 20; ++i) {
        const Bytes name = home.at(Bytes::number(i));
        QCOMPARE(::mkdir(name.constData(), 0700), 0);
        struct stat status;
        QCOMPARE(::stat(name.constData(), &status), 0);
        hints.keep(name, name, status);
        QVERIFY(hints.place(home.at("0"))); // used all the time, so never let go
    }
    QCOMPARE(hints.count(), LiveHints::maxCount);
    QVERIFY(!hints.place(home.at("1")));
}

QTEST_GUILESS_MAIN(TestAliasMoves)
#include "tst_aliasmoves.moc"
