// SPDX-License-Identifier: MIT
#include "links/linkkind.h"
#include "platform/aliasfile.h"
#include "support/stdoutcapture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TestLinkKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindOfAddress_data();
    void kindOfAddress();
    void kindOfPath_data();
    void kindOfPath();
    void look_data();
    void look();
};

namespace {

TileMenuItem linkTo(const QString &text)
{
    TileMenuItem link;
    link.itemString = text;
    return link;
}

} // namespace

void TestLinkKind::kindOfAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("lines");
    QTest::newRow("web") << QStringLiteral("https://example.org/a") << QStringLiteral("https") << 0;
    QTest::newRow("case is kept") << QStringLiteral("HTTPS://example.org") << QStringLiteral("HTTPS") << 0;
    QTest::newRow("mail") << QStringLiteral("mailto:a@example.org") << QStringLiteral("mailto") << 0;
    QTest::newRow("nothing after the scheme") << QStringLiteral("tel://") << QStringLiteral("tel") << 0;
    QTest::newRow("unknown word") << QStringLiteral("abc:def") << QStringLiteral("abc") << 0;
    QTest::newRow("blank makes it a path") << QStringLiteral("https://a b") << QStringLiteral("unknown") << 1;
    QTest::newRow("host alone") << QStringLiteral("example.org/x") << QStringLiteral("unknown") << 1;
    QTest::newRow("empty") << QString() << QStringLiteral("unknown") << 1;
    QTest::newRow("missing path") << QStringLiteral("/no/such file") << QStringLiteral("unknown") << 1;
    // The text before the NUL names a folder; cut there it would have been taken for it.
    QTest::newRow("NUL in a path") << QStringLiteral("/tmp") + QChar(0) + QLatin1Char('x')
                                   << QStringLiteral("unknown") << 1;
}

void TestLinkKind::kindOfAddress()
{
    QFETCH(QString, address);
    StdoutCapture output;
    const QString kind = links::linkKind(linkTo(address));
    const QStringList lines = output.lines();
    QTEST(kind, "kind");
    QTEST(int(lines.size()), "lines");
    for (const QString &line : lines) {
        QVERIFY(line.startsWith(QLatin1String("Failed to resolve alias: ")));
        QVERIFY(line.contains(QLatin1String("domain POSIX, code ")));
    }
}

void TestLinkKind::kindOfPath_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("throughAlias");
    QTest::addColumn<QString>("kind");
    for (const bool throughAlias : {false, true}) {
        const char *way = throughAlias ? "alias" : "direct";
        QTest::addRow("%s: application", way)
            << QStringLiteral("Calculator.app") << throughAlias << QStringLiteral("appAlias");
        QTest::addRow("%s: folder", way)
            << QStringLiteral("My Folder") << throughAlias << QStringLiteral("folderAlias");
        QTest::addRow("%s: file", way)
            << QStringLiteral("a.txt") << throughAlias << QStringLiteral("documentAlias");
        QTest::addRow("%s: symbolic link", way)
            << QStringLiteral("link") << throughAlias << QStringLiteral("folderAlias");
    }
}

void TestLinkKind::kindOfPath()
{
    QFETCH(QString, name);
    QFETCH(bool, throughAlias);
    QTemporaryDir folder;
    QDir dir(folder.path());
    QVERIFY(dir.mkdir(QStringLiteral("Calculator.app")) && dir.mkdir(QStringLiteral("My Folder")));
    QVERIFY(QFile::link(QStringLiteral("My Folder"), folder.filePath(QStringLiteral("link"))));
    QVERIFY(QFile(folder.filePath(QStringLiteral("a.txt"))).open(QIODevice::WriteOnly));
    QString path = folder.filePath(name);
    if (throughAlias) {
        const QString alias = folder.filePath(QStringLiteral("0A1B2C3D"));
        QVERIFY(platform::writeAliasFile(QFile::encodeName(path), QFile::encodeName(alias), nullptr));
        path = alias;
    }
    QTEST(links::linkKind(linkTo(path)), "kind");
    QVERIFY(links::isAlias(linkTo(path)));
}

void TestLinkKind::look_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QColor>("tint");
    const QColor blue = QColor::fromRgbF(0.0F, 0.64F, 0.88F);
    const QColor orange = QColor::fromRgbF(1.0F, 0.4F, 0.12F);
    // The two tables differ: these are the kinds that only one of them knows.
    QTest::newRow("image without a tint") << QStringLiteral("smb") << QStringLiteral("server.rack") << orange;
    QTest::newRow("tint without an image")
        << QStringLiteral("wss") << QStringLiteral("questionmark.square") << blue;
    QTest::newRow("both") << QStringLiteral("ssh") << QStringLiteral("apple.terminal") << blue;
    QTest::newRow("other case") << QStringLiteral("Https") << QStringLiteral("questionmark.square") << orange;
    QTest::newRow("unknown") << QStringLiteral("unknown") << QStringLiteral("questionmark.square") << orange;
    QTest::newRow("empty") << QString() << QStringLiteral("questionmark.square") << orange;
}

void TestLinkKind::look()
{
    QFETCH(QString, kind);
    QTEST(links::symbolOfKind(kind), "symbol");
    QTEST(links::tintOfKind(kind), "tint");
}

QTEST_GUILESS_MAIN(TestLinkKind)
#include "tst_linkkind.moc"
