// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <QDir>
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
    void init();
    void contentIsReadWhole_data();
    void contentIsReadWhole();
    void onlyRegularFilesAreTouched_data();
    void onlyRegularFilesAreTouched();
    void largeFileIsRefused();
    void shorterContentReplacesLonger();
    void atomicWriteKeepsPermissionsAndLinks();
    void failedAtomicWriteLeavesNothingBehind();
    void swappedWriteKeepsTheContentBefore();
    void copiesNeverOverwrite();
    void folders_data();
    void folders();
    void strictUtf8_data();
    void strictUtf8();

private:
    QString at(const char *name) const { return m_dir->filePath(QString::fromUtf8(name)); }
    static QByteArray path(const QString &name) { return QFile::encodeName(name); }
    static unsigned modeOf(const QString &name)
    {
        struct stat status;
        return ::stat(path(name).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }
    QStringList entries() const
    {
        return QDir(m_dir->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestFiles::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void TestFiles::contentIsReadWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("NUL and line ends") << QByteArray("a\0\r\n", 4);
    QTest::newRow("large") << QByteArray(3 << 20, 'x');
}

void TestFiles::contentIsReadWhole()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(platform::writeInPlace(at("ƒ"), bytes, nullptr));
    QCOMPARE(platform::readWholeFile(at("ƒ"), nullptr), bytes);
    // Files of the kernel's own say that they are empty.
    QVERIFY(platform::readWholeFile(QStringLiteral("/proc/self/status"), nullptr)->startsWith("Name:"));
}

void TestFiles::onlyRegularFilesAreTouched_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("folder") << EISDIR;
    QTest::newRow("pipe") << EINVAL;
    QTest::newRow("pipe without a reader") << ENXIO;
    QTest::newRow("device") << EINVAL;
    QTest::newRow("circle of links") << ELOOP;
}

void TestFiles::onlyRegularFilesAreTouched()
{
    // A pipe in a file's place used to hang whoever wrote to it until somebody read.
    QFETCH(int, code);
    const QByteArray kind = QTest::currentDataTag();
    const QString name = at("x");
    int reader = -1;
    if (kind == "folder")
        QVERIFY(QDir().mkpath(name));
    else if (kind == "device")
        QVERIFY(QFile::link(QStringLiteral("/dev/null"), name));
    else if (kind == "circle of links")
        QVERIFY(QFile::link(name, name));
    else
        QCOMPARE(::mkfifo(path(name).constData(), 0600), 0);
    if (kind == "pipe")
        reader = ::open(path(name).constData(), O_RDONLY | O_NONBLOCK);

    platform::Error error;
    QVERIFY(!platform::writeInPlace(name, "bytes", &error));
    QCOMPARE(error.code, code);
    QVERIFY(!platform::readWholeFile(name, &error));
    QVERIFY(error.code != 0);
    QVERIFY(!platform::writeAtomically(name, "bytes", &error));
    QCOMPARE(entries(), QStringList(QStringLiteral("x")));
    if (reader >= 0)
        ::close(reader);
}

void TestFiles::largeFileIsRefused()
{
    QVERIFY(platform::writeInPlace(at("x"), "12345", nullptr));
    platform::Error error;
    QCOMPARE(platform::readWholeFile(at("x"), &error, 5), QByteArray("12345"));
    QVERIFY(!platform::readWholeFile(at("x"), &error, 4));
    QCOMPARE(error.description(), QStringLiteral("The file “x” could not be read: File too large."));
    QCOMPARE(
        error.fullDescription(),
        QStringLiteral("The file “x” could not be read: File too large. (domain POSIX, code 27, path %1)")
            .arg(at("x")));
    QVERIFY(!platform::readWholeFile(QStringLiteral("/proc/self/status"), &error, 4));
}

void TestFiles::shorterContentReplacesLonger()
{
    QVERIFY(platform::writeInPlace(at("x"), "longer", nullptr));
    QVERIFY(platform::writeInPlace(at("x"), "new", nullptr));
    QCOMPARE(platform::readWholeFile(at("x"), nullptr), QByteArray("new"));
}

void TestFiles::atomicWriteKeepsPermissionsAndLinks()
{
    const mode_t umask = ::umask(022);
    QVERIFY(platform::writeAtomically(at("new"), "1", nullptr));
    QVERIFY(platform::writeAtomically(at("private"), "1", nullptr, 0600));
    ::umask(umask);
    QCOMPARE(modeOf(at("new")), 0644u);
    QCOMPARE(modeOf(at("private")), 0600u);

    ::chmod(path(at("new")).constData(), 0751);
    QVERIFY(QDir().mkpath(at("folder")));
    QVERIFY(QFile::link(QStringLiteral("../new"), at("folder/link"))); // relative to the link's own folder
    QVERIFY(QFile::link(QStringLiteral("folder/link"), at("second")));
    QVERIFY(platform::writeAtomically(at("second"), "2", nullptr, 0600));
    QCOMPARE(platform::readWholeFile(at("new"), nullptr), QByteArray("2"));
    QCOMPARE(modeOf(at("new")), 0751u);
    QVERIFY(QFileInfo(at("second")).isSymLink() && QFileInfo(at("folder/link")).isSymLink());

    QVERIFY(QFile::link(QStringLiteral("missing"), at("dangling")));
    QVERIFY(platform::writeAtomically(at("dangling"), "3", nullptr));
    QCOMPARE(platform::readWholeFile(at("missing"), nullptr), QByteArray("3"));

    QVERIFY(platform::writeAtomically(m_dir->filePath(QString(255, u'x')), "longest name", nullptr));
}

void TestFiles::failedAtomicWriteLeavesNothingBehind()
{
    platform::Error error;
    QVERIFY(!platform::writeAtomically(at("missing/x"), "1", &error));
    QCOMPARE(error.code, ENOENT);
    QVERIFY(!platform::writeAtomically(m_dir->filePath(QString(256, u'x')), "name too long", &error));
    QCOMPARE(error.code, ENAMETOOLONG);
    QCOMPARE(entries(), QStringList());
}

void TestFiles::swappedWriteKeepsTheContentBefore()
{
    for (const QByteArray &bytes : {QByteArray("first"), QByteArray("2"), QByteArray("third")}) {
        const auto before = platform::readWholeFile(at("x"), nullptr);
        QVERIFY(platform::writeBySwapping(at("x"), at("spare"), bytes, nullptr));
        QCOMPARE(platform::readWholeFile(at("x"), nullptr), bytes);
        QCOMPARE(platform::readWholeFile(at("spare"), nullptr), before);
        QCOMPARE(modeOf(at("x")), 0600u);
    }
    QVERIFY(QFile::remove(at("spare")) && QDir().mkpath(at("spare")));
    platform::Error error;
    QVERIFY(!platform::writeBySwapping(at("x"), at("spare"), "4", &error));
    QCOMPARE(error.code, EISDIR);
    QCOMPARE(platform::readWholeFile(at("x"), nullptr), QByteArray("third"));
}

void TestFiles::copiesNeverOverwrite()
{
    const QByteArray bytes(1 << 20, 'x');
    QVERIFY(platform::writeInPlace(at("x"), bytes, nullptr));
    QVERIFY(platform::copyFile(at("x"), at("y"), nullptr));
    QCOMPARE(platform::readWholeFile(at("y"), nullptr), bytes);
    QCOMPARE(modeOf(at("y")), 0600u);
    QVERIFY(platform::writeInPlace(at("x"), "new", nullptr));
    platform::Error error;
    QVERIFY(!platform::copyFile(at("x"), at("y"), &error));
    QCOMPARE(error.code, EEXIST);
    QCOMPARE(platform::readWholeFile(at("y"), nullptr), bytes);
    QVERIFY(!platform::copyFile(at("missing"), at("z"), &error));
    QCOMPARE(error.path, at("missing"));
}

void TestFiles::folders_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("problem");
    QTest::newRow("parents too") << QStringLiteral("a/b/ƒ c") << QString();
    QTest::newRow("slashes at the end") << QStringLiteral("a/b//") << QString();
    QTest::newRow("there already") << QStringLiteral("folder") << QString();
    QTest::newRow("behind a link") << QStringLiteral("link/a") << QString();
    QTest::newRow("file in its place")
        << QStringLiteral("file") << QStringLiteral("“file” could not be made: Not a directory.");
    QTest::newRow("below a file") << QStringLiteral("file/a/b")
                                  << QStringLiteral("“b” could not be made: Not a directory.");
    QTest::newRow("dangling link in its place")
        << QStringLiteral("dangling") << QStringLiteral("“dangling” could not be made: File exists.");
    QTest::newRow("below a dangling link")
        << QStringLiteral("dangling/a") << QStringLiteral("“dangling” could not be made: File exists.");
    QTest::newRow("no name") << QString() << QStringLiteral("could not be made: No such file or directory.");
}

void TestFiles::folders()
{
    QFETCH(QString, name);
    QFETCH(QString, problem);
    QVERIFY(QDir().mkpath(at("folder")));
    QVERIFY(platform::writeInPlace(at("file"), "1", nullptr));
    QVERIFY(QFile::link(QStringLiteral("folder"), at("link")));
    QVERIFY(QFile::link(QStringLiteral("missing"), at("dangling")));
    const QString place = name.isEmpty() ? name : m_dir->path() + u'/' + name;
    platform::Error error;
    QCOMPARE(platform::makeFolder(place, &error), problem.isEmpty());
    QCOMPARE(QFileInfo(place).isDir(), problem.isEmpty());
    QVERIFY2(error.description().endsWith(problem), qPrintable(error.description()));
}

void TestFiles::strictUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isValid");
    QTest::newRow("plain") << QByteArray("aé🙂") << true;
    QTest::newRow("mark") << QByteArray("\xEF\xBB\xBF"
                                        "aé🙂")
                          << true;
    QTest::newRow("overlong") << QByteArray("\xC0\x80") << false;
    QTest::newRow("surrogate") << QByteArray("\xED\xA0\x80") << false;
    QTest::newRow("past U+10FFFF") << QByteArray("\xF4\x90\x80\x80") << false;
    QTest::newRow("cut off") << QByteArray("a\xF0\x9F\x99") << false;
}

void TestFiles::strictUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isValid);
    const auto text = platform::decodeUtf8(bytes, nullptr);
    QCOMPARE(text.has_value(), isValid);
    if (isValid)
        QCOMPARE(*text, QStringLiteral("aé🙂"));
}

QTEST_APPLESS_MAIN(TestFiles)
#include "tst_files.moc"
