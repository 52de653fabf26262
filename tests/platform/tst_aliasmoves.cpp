// SPDX-License-Identifier: MIT
#include "platform/aliasresolver.h"
#include "support/files.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdlib>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace platform;
using Bytes = QByteArray;

namespace {

const Bytes target = "work/project/target";

/// A home folder with a documents folder and an alias of one target, and a resolver for it.
class Home
{
public:
    explicit Home(const Bytes &name = target)
    {
        for (const char *folder : {"Documents/Tile/", "work/project/part/", "other/deep/"})
            write(folder, {});
        write(name, "text");
        if (!writeAliasFile(at(name), alias(), nullptr))
            qFatal("cannot make the alias");
        startAnew();
    }

    Bytes at(const Bytes &name) const { return QFile::encodeName(m_folder.path()) + '/' + name; }
    Bytes alias() const { return at("Documents/Tile/A"); }

    void write(const Bytes &name, const Bytes &text) const
    {
        support::make(QFile::decodeName(at(name)), text);
    }
    /// Runs a line of the shell in the home folder; "@" is the target.
    void change(Bytes script) const
    {
        script.replace('@', target);
        const Bytes line =
            "write() { printf other >$1; }; cd '" + at("") + "' && " + script.replace("; ", " && ");
        if (std::system(line.constData()) != 0)
            qFatal("cannot %s", script.constData());
    }
    struct stat statusOf(const Bytes &path) const
    {
        struct stat status = {};
        ::stat(path.constData(), &status);
        return status;
    }
    /// A program that has not seen the target yet.
    void startAnew()
    {
        resolver = std::make_unique<AliasResolver>(AliasResolver::Places{at(""), {at("Documents"), at("")}});
    }

    /// The name below the home folder to which the alias leads; empty when it is broken.
    Bytes found(const Bytes &name = "Documents/Tile/A") const
    {
        const std::optional<AliasTarget> place = resolver->resolve(at(name), nullptr);
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

/// True when this process has a file open whose path, in the kernel's words, ends so.
bool isOpen(const char *end)
{
    bool found = false;
    for (const QFileInfo &file : QDir(u"/proc/self/fd"_qs).entryInfoList(QDir::AllEntries | QDir::System))
        found |= file.symLinkTarget().endsWith(QLatin1String(end));
    return found;
}

} // namespace

class TestAliasMoves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("XDG_DATA_HOME", "/nowhere"); }

    void followsWhatWasMoved()
    {
        const Bytes trash = ".Trash-" + Bytes::number(::getuid());
        using Row = std::tuple<Bytes, Bytes, Bytes>; // the change, found while running, found while not
        const Row rows[] = {
            {"mv @ work/project/new", "work/project/new", "work/project/new"},
            {"mv @ other/deep/x", "other/deep/x", "other/deep/x"},
            {"mv work/project other/deep/p", "other/deep/p/target", "other/deep/p/target"},
            {"mv work new", "new/project/target", "new/project/target"},
            {"mv work/project work/new; mv work/new/target work/new/x", "work/new/x", "work/new/x"},
            // Saved by replacing, then with a backup: the new file is what the user works on.
            {"write work/project/.save; mv work/project/.save @", target, target},
            {"mv @ @~; write @", target, target},
            {"rm @; write @", target, target},
            {"rm @; write work/target; write other/target", "", ""},
            {"mv @ work/project/new; mkdir @", "work/project/new", "work/project/new"},
            {"mkdir " + trash + "; mv @ " + trash + "/x", "", ""},
            {"mkdir .hidden; mv @ .hidden/x", ".hidden/x", ""},
            {"write other/deep/CACHEDIR.TAG; mv work/project other/deep/p", "other/deep/p/target",
             "other/deep/p/target"},
            {"mkdir other/deep/x; write other/deep/CACHEDIR.TAG; mv @ other/deep/x/t", "other/deep/x/t", ""},
        };
        for (const auto &[change, whileRunning, whileNotRunning] : rows) {
            const Home running;
            QCOMPARE(running.found(), target);
            running.change(change);
            QVERIFY2(running.found() == whileRunning, change.constData());
            Home stopped;
            stopped.change(change);
            stopped.startAnew();
            QVERIFY2(stopped.foundByWorker() == whileNotRunning, change.constData());
        }
    }

    void savedByReplacingThenMoved()
    {
        const Home home;
        QCOMPARE(home.found(), target);
        home.change("write work/project/.save; mv work/project/.save @");
        QVERIFY(!isOpen("/target"));
        QTRY_VERIFY(isOpen("/target"));
        home.change("mv @ other/deep/x");
        QCOMPARE(home.found(), Bytes("other/deep/x"));
        // A held file kept its room on the disk after it was deleted.
        home.change("rm other/deep/x");
        QVERIFY(isOpen("/x (deleted)"));
        QTRY_VERIFY(!isOpen("/x (deleted)"));
    }

    void workerTellsWhatItFindsAndLooksOnItsOwnDisksOnly()
    {
        for (const bool wasOnAnother : {false, true}) {
            Home home("work/project/part/low");
            home.change("sed -i 's/^relative:/was:/' Documents/Tile/A");
            if (wasOnAnother)
                home.change("sed -i -E 's/^(device|filesystem): .*/\\1: 1/' Documents/Tile/A");
            home.change("mv work/project/part/low other/deep/low"); // out of sight of the nearest folders
            home.startAnew();
            QSignalSpy found(home.resolver.get(), &AliasResolver::targetFound);
            QCOMPARE(home.found(), Bytes());
            QVERIFY(wasOnAnother || found.wait(30000));
            QCOMPARE(home.foundByWorker(), wasOnAnother ? "" : "other/deep/low");
        }
    }

    /// A documents folder restored from a copy: nothing has its old identity any more.
    void copiedTogether()
    {
        Home home("Documents/target");
        home.change("cp -r Documents restored; rm Documents/target");
        home.startAnew();
        QCOMPARE(home.found("restored/Tile/A"), Bytes("restored/target"));
    }

    void reusedInodeIsAnotherFile()
    {
        Home home;
        const ino_t inode = home.statusOf(home.at(target)).st_ino;
        home.change("rm @");
        Bytes name;
        for (int i = 0; i < 64 && home.statusOf(home.at(name)).st_ino != inode; ++i)
            home.write(name = "work/project/new" + Bytes::number(i), "");
        if (home.statusOf(home.at(name)).st_ino != inode)
            QSKIP("this file system gives out new inode numbers");
        home.startAnew();
        QCOMPARE(home.foundByWorker(), Bytes());
    }

    void targetOnAnotherFileSystem()
    {
        const QTemporaryDir other(QStringLiteral("/dev/shm/aliasXXXXXX"));
        const Home home;
        const Bytes folder = QFile::encodeName(other.path());
        if (!other.isValid() || home.statusOf(folder).st_dev == home.statusOf(home.at("")).st_dev)
            QSKIP("no second file system");
        support::make(other.filePath(QStringLiteral("target")));
        QVERIFY(writeAliasFile(folder + "/target", home.alias(), nullptr));
        QVERIFY(home.resolver->resolve(home.alias(), nullptr));
        QVERIFY(!isOpen("/target")); // so that it can be unmounted
        QCOMPARE(::rename((folder + "/target").constData(), (folder + "/new").constData()), 0);
        std::optional<AliasTarget> place;
        QTRY_VERIFY((place = home.resolver->resolve(home.alias(), nullptr)));
        QCOMPARE(place->path, folder + "/new");
    }

    void aliasesOfAliases()
    {
        const Home home;
        Bytes before = home.alias();
        for (int i = 0; i < 17; ++i)
            QVERIFY(writeAliasFile(std::exchange(before, home.at(Bytes::number(i))), before, nullptr));
        home.change("mv @ work/project/new");
        QCOMPARE(home.foundByWorker(), Bytes("work/project/new"));
        QCOMPARE(home.found("14"), Bytes("work/project/new"));
        home.write("B", "pondWicket alias 1\npath: " + home.at("C") + '\n');
        home.write("C", "pondWicket alias 1\npath: " + home.at("B") + '\n');
        for (const char *broken : {"15", "B"}) {
            Error error;
            QVERIFY2(!home.resolver->resolve(home.at(broken), &error), broken);
            QVERIFY2(error.reason.contains(QLatin1String("too many")), broken);
        }
        home.resolver->refresh(home.at("B")); // ends
    }

    void onlyAnOpenedLinkIsRewritten()
    {
        Home home;
        home.change("mv @ work/project/new");
        const FileStamp before = FileStamp::of(home.statusOf(home.alias()));
        QCOMPARE(home.foundByWorker(), Bytes("work/project/new"));
        QCOMPARE(FileStamp::of(home.statusOf(home.alias())), before);
        home.resolver->refresh(home.alias());
        // Without the rewriting this step would lead out of every recorded folder.
        home.change("mv work/project other/deep/p; mv other gone");
        home.startAnew();
        QCOMPARE(home.foundByWorker(), Bytes("gone/deep/p/new"));
        QCOMPARE(int(home.statusOf(home.alias()).st_mode & 07777), 0600);
    }

    void automountIsNotTouched()
    {
        const Home home;
        home.change("ln -s work link");
        const Bytes place = home.at("work").replace(' ', "\\040");
        const Bytes table =
            "21 1 8:1 / / rw - ext4 /dev/sda rw\n22 21 0:9 / " + place + " rw - autofs systemd rw\n";
        const auto resolves = [&home](const Bytes &text, const Bytes &name) {
            AliasResolver resolver({home.at(""), {}}, std::make_unique<MountTable>(text));
            return resolver.resolve(home.at(name), nullptr).has_value();
        };
        for (const Bytes &name : {target, Bytes("link/project/target"), Bytes("Documents/Tile/A")})
            QVERIFY2(!resolves(table, name), name.constData());
        QVERIFY(resolves(table, "other"));
        // Once something is mounted there it hides the automounter.
        const Bytes mounted = table + "23 22 0:10 / " + place + " rw - ext4 /dev/sdb rw\n";
        QVERIFY(resolves(mounted, "link/project/target"));
        // A network that answers is as good as a disk; on a busy machine not always at once.
        const Bytes network = table + "23 22 0:10 / " + place + " rw - nfs4 server:/ rw\n";
        QTRY_VERIFY(resolves(network, "Documents/Tile/A"));
    }

    /// The program crashed when there was no descriptor left to read the table with.
    void mountTableMayBeUnreadable()
    {
        rlimit before;
        QVERIFY(::getrlimit(RLIMIT_NOFILE, &before) == 0);
        const rlimit none = {0, before.rlim_max};
        QVERIFY(::setrlimit(RLIMIT_NOFILE, &none) == 0);
        const bool isNetwork = platform::MountTable().isNetwork("/home");
        QVERIFY(::setrlimit(RLIMIT_NOFILE, &before) == 0 && !isNetwork);
    }

    void manyTargetsStayBelowTheLimit()
    {
        const Home home;
        LiveHints hints(home.at(""));
        for (int i = 0; i < LiveHints::maxCount + 20; ++i) {
            home.change("mkdir " + Bytes::number(i));
            const Bytes name = home.at(Bytes::number(i));
            hints.keep(name, name, home.statusOf(name));
            QVERIFY(hints.place(home.at("0"))); // used all the time, so never let go
        }
        QCOMPARE(hints.count(), LiveHints::maxCount);
        QVERIFY(!hints.place(home.at("1")));
    }
};

QTEST_GUILESS_MAIN(TestAliasMoves)
#include "tst_aliasmoves.moc"
