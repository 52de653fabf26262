// SPDX-License-Identifier: MIT
#include "support/files.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

class TestFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void onlyRegularFilesAreTouched()
    {
        // A pipe in a file's place used to hang whoever wrote to it until somebody read.
        using Row = std::pair<QByteArray, int>;
        for (const auto &[kind, code] :
             {Row("folder", EISDIR), Row("pipe", EINVAL), Row("device", EINVAL),
              Row("pipe without a reader", ENXIO), Row("circle of links", ELOOP)}) {
            init();
            const QString name = at("x");
            int reader = -1;
            if (kind == "folder")
                QVERIFY(QDir().mkpath(name));
            else if (kind == "device" || kind == "circle of links")
                QVERIFY(QFile::link(kind == "device" ? u"/dev/null"_qs : name, name));
            else
                QCOMPARE(::mkfifo(path(name).constData(), 0600), 0);
            if (kind == "pipe")
                reader = ::open(path(name).constData(), O_RDONLY | O_NONBLOCK);
            platform::Error error;
            QVERIFY2(!platform::writeInPlace(name, "bytes", &error) && error.code == code, kind.constData());
            QVERIFY2(!platform::readWholeFile(name, nullptr), kind.constData());
            QVERIFY2(!platform::writeAtomically(name, "bytes", nullptr), kind.constData());
            QCOMPARE(entries(), QStringList(u"x"_qs));
            ::close(reader);
        }
    }

    void contentIsReadWholeOrRefused()
    {
        // Files of the kernel's own say that they are empty.
        const QString ofKernel = u"/proc/self/status"_qs;
        QVERIFY(platform::readWholeFile(ofKernel, nullptr)->startsWith("Name:"));
        QVERIFY(!platform::readWholeFile(ofKernel, nullptr, 4));
        const QByteArray large(3 << 20, 'x');
        support::make(at("ƒ"), large);
        QCOMPARE(platform::readWholeFile(at("ƒ"), nullptr, large.size()), large);
        platform::Error error;
        QVERIFY(!platform::readWholeFile(at("ƒ"), &error, large.size() - 1));
        QVERIFY(error.description().endsWith(u"“ƒ” could not be read: File too large."));
    }

    void atomicWriteKeepsPermissionsAndLinksAndNothingElse()
    {
        const mode_t umask = ::umask(022);
        QVERIFY(platform::writeAtomically(at("new"), "1", nullptr));
        QVERIFY(platform::writeAtomically(at("private"), "1", nullptr, 0600));
        ::umask(umask);
        QCOMPARE(modeOf(at("new")), 0644u);
        QCOMPARE(modeOf(at("private")), 0600u);

        ::chmod(path(at("new")).constData(), 0751);
        support::make(at("folder/"));
        QVERIFY(QFile::link(u"../new"_qs, at("folder/link"))); // relative to itself
        QVERIFY(QFile::link(u"folder/link"_qs, at("second")));
        QVERIFY(QFile::link(u"missing"_qs, at("dangling")));
        for (const auto &[name, target] : {std::pair("second", "new"), std::pair("dangling", "missing")}) {
            QVERIFY(platform::writeAtomically(at(name), "2", nullptr, 0600));
            QCOMPARE(bytes(target), "2");
            QVERIFY(QFileInfo(at(name)).isSymLink());
        }
        QCOMPARE(modeOf(at("new")), 0751u);
        QVERIFY(QFileInfo(at("folder/link")).isSymLink());

        const qsizetype files = entries().size();
        QVERIFY(!platform::writeAtomically(at("absent/x"), "1", nullptr));
        QVERIFY(!platform::writeAtomically(m_dir->filePath(QString(256, u'x')), "name too long", nullptr));
        QCOMPARE(entries().size(), files);
        QVERIFY(platform::writeAtomically(m_dir->filePath(QString(255, u'x')), "longest name", nullptr));
    }

    void leftoversOfKilledWritersAreRemoved()
    {
        const QStringList others =
            u".pondwicket- .pondwicket-0x1 .pondwicket-12AB .pondwicket-1~ pondwicket-1"_qs.split(u' ');
        for (const QString &name : others + QStringList{u".pondwicket-12ab"_qs})
            support::make(m_dir->filePath(name));
        QVERIFY(QDir().mkpath(at(".pondwicket-2")) && QFile::link(at("pondwicket-1"), at(".pondwicket-3")));
        platform::removeLeftovers(m_dir->path());
        QVERIFY(QFile::exists(at(".pondwicket-12ab"))); // too young
        platform::removeLeftovers(m_dir->path(), 0);
        QVERIFY(!QFile::exists(at(".pondwicket-12ab")));
        QCOMPARE(entries().size(), others.size() + 2);
    }

    void swappedWriteKeepsTheContentBefore()
    {
        for (const char *text : {"first", "2", "third"}) {
            const QByteArray before = bytes("x");
            QVERIFY(platform::writeBySwapping(at("x"), at("spare"), text, nullptr));
            QVERIFY(bytes("x") == text && bytes("spare") == before && modeOf(at("x")) == 0600);
        }
        QVERIFY(QFile::remove(at("spare")) && QDir().mkpath(at("spare")));
        QVERIFY(!platform::writeBySwapping(at("x"), at("spare"), "4", nullptr));
        QCOMPARE(bytes("x"), "third");
    }

    void copiesNeverOverwrite()
    {
        const QByteArray large(1 << 20, 'x');
        support::make(at("x"), large);
        QVERIFY(platform::copyFile(at("x"), at("y"), nullptr) && modeOf(at("y")) == 0600);
        support::make(at("x"), "new");
        QVERIFY(!platform::copyFile(at("x"), at("y"), nullptr));
        QCOMPARE(bytes("y"), large);
    }

    void folders()
    {
        support::make(at("folder/"));
        support::make(at("file"));
        QVERIFY(QFile::link(u"folder"_qs, at("link")));
        QVERIFY(QFile::link(u"missing"_qs, at("dangling")));
        for (const char *name : {"a/b/ƒ c", "c/d//", "folder", "link/a"})
            QVERIFY2(platform::makeFolder(at(name), nullptr) && QFileInfo(at(name)).isDir(), name);
        for (const auto &[path, problem] :
             {std::pair(at("file"), u"“file” could not be made: Not a directory."_qs),
              std::pair(at("file/a/b"), u"“b” could not be made: Not a directory."_qs),
              std::pair(at("dangling/a"), u"“dangling” could not be made: File exists."_qs),
              std::pair(QString(), u": No such file or directory."_qs)}) {
            platform::Error error;
            QVERIFY2(!platform::makeFolder(path, &error), qPrintable(path));
            QVERIFY2(error.description().endsWith(problem), qPrintable(error.description()));
        }
    }

private:
    QString at(const char *name) const { return m_dir->filePath(QString::fromUtf8(name)); }
    static QByteArray path(const QString &name) { return QFile::encodeName(name); }
    static unsigned modeOf(const QString &name)
    {
        struct stat status;
        return ::stat(path(name).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }
    QStringList entries() const { return support::namesIn(m_dir->path()); }
    QByteArray bytes(const char *name) const { return support::bytesOf(at(name)); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_APPLESS_MAIN(TestFiles)
#include "tst_files.moc"
