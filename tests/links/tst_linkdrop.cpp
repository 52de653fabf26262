// SPDX-License-Identifier: MIT
#include "links/linkdrop.h"
#include "links/linkkind.h"
#include "model/settingsstore.h"
#include "model/tiles.h"

#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QtTest>

using links::DroppedItem;
using Formats = QList<std::pair<QString, QByteArray>>;

class TestLinkDrop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatCounts_data();
    void whatCounts();
    void dragIsAnswered_data();
    void dragIsAnswered();
    void textIsHandedOverLater();
    void tileMayGoMeanwhile();
    void fileAddresses_data();
    void fileAddresses();
    void bytesThatAreNoTextAddNothing();
};

namespace {

const QString uriList = QStringLiteral("text/uri-list");
const QString plain = QStringLiteral("text/plain");
const QString plainUtf8 = QStringLiteral("text/plain;charset=utf-8");
const QString mozUrl = QStringLiteral("text/x-moz-url");
const QString netscapeUrl = QStringLiteral("_NETSCAPE_URL");

void fill(QMimeData &data, const Formats &formats)
{
    for (const auto &[format, bytes] : formats)
        data.setData(format, bytes);
}

QByteArray utf16(const QString &text)
{
    return {reinterpret_cast<const char *>(text.utf16()), text.size() * 2};
}

} // namespace

void TestLinkDrop::whatCounts_data()
{
    QTest::addColumn<Formats>("formats");
    QTest::addColumn<int>("kind"); // -1: refused
    QTest::addColumn<QByteArray>("bytes");
    const int text = int(DroppedItem::Kind::Text);
    const int file = int(DroppedItem::Kind::File);
    const QByteArray list = "file:///home/u/My%20File.txt\r\nfile:///home/u/b%C3%A9\r\n";
    const QByteArray first = "file:///home/u/My%20File.txt";
    const auto row = [](const char *name, const Formats &formats, int kind, const QByteArray &bytes) {
        QTest::newRow(name) << formats << kind << bytes;
    };
    row("list alone", {{uriList, list}}, file, first);
    row("comments", {{uriList, "# x\r\n\r\n" + list}}, file, first);
    row("comments alone", {{uriList, "# x\r\n"}}, -1, {});
    row("addresses again", {{uriList, list}, {plain, list}}, file, first);
    row("paths joined by blanks", {{uriList, list}, {plainUtf8, "/home/u/My File.txt /home/u/b\u00e9"}}, file,
        first);
    row("quoted paths", {{uriList, list}, {plain, "'/home/u/My File.txt' '/home/u/b\u00e9'\n"}}, file, first);
    row("names", {{uriList, list}, {plain, "My File.txt, b\u00e9"}}, file, first);
    row("first path with a NUL", {{uriList, list}, {plain, QByteArray("/home/u/My File.txt") + '\0'}}, file,
        first);
    row("other escapes", {{uriList, list}, {plain, "file:///home/u/My File.txt\nfile:///home/u/b%c3%a9"}},
        file, first);
    row("empty text", {{uriList, list}, {plain, ""}}, file, first);
    row("name that is not UTF-8", {{uriList, "file:///a/%FF"}, {plain, "/a/\xff"}}, file, "file:///a/%FF");
    row("folder with a slash", {{uriList, "file:///a/b/"}, {plain, "/a/b"}}, file, "file:///a/b/");
    row("text of its own", {{uriList, list}, {plain, "see https://example.org"}}, text,
        "see https://example.org");
    row("text that begins alike", {{uriList, list}, {plain, "My File.txt.bak"}}, text, "My File.txt.bak");
    row("text alone", {{plain, "a b"}}, text, "a b");
    row("better text first", {{plain, "caf?"}, {plainUtf8, "caf\u00e9"}}, text, "caf\u00e9");
    row("upper case", {{QStringLiteral("text/plain;charset=UTF-8"), "x"}}, text, "x");
    row("web address in the list", {{uriList, "https://example.org/\r\nfile:///a\r\n"}}, text,
        "https://example.org/");
    row("web link with its title",
        {{uriList, "https://example.org/"},
         {plain, "https://example.org/"},
         {QStringLiteral("text/html"), "<a>"}},
        text, "https://example.org/");
    row("browser's own", {{mozUrl, utf16(QStringLiteral("https://example.org/\nA title"))}}, text,
        "https://example.org/");
    row("older browser's", {{netscapeUrl, "https://example.org/\nA title"}}, text, "https://example.org/");
    row("picture of a page",
        {{uriList, "file:///tmp/x.png"}, {mozUrl, utf16(QStringLiteral("https://e.org/x.png"))}}, text,
        "https://e.org/x.png");
    row("odd number of bytes", {{mozUrl, QByteArray("h\0t", 3)}}, text, QByteArray("h\0t", 3));
    row("picture", {{QStringLiteral("image/png"), "x"}}, -1, {});
    row("markup alone", {{QStringLiteral("text/html"), "<a>"}}, -1, {});
    row("nothing", {}, -1, {});
}

void TestLinkDrop::whatCounts()
{
    QFETCH(Formats, formats);
    QFETCH(int, kind);
    QMimeData data;
    fill(data, formats);
    const std::optional<DroppedItem> item = links::droppedItem(data);
    QCOMPARE(item ? int(item->kind) : -1, kind);
    if (item)
        QTEST(item->bytes, "bytes");
}

void TestLinkDrop::dragIsAnswered_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("list") << uriList << true;
    QTest::newRow("text") << plainUtf8 << true;
    QTest::newRow("browser") << netscapeUrl << true;
    QTest::newRow("picture") << QStringLiteral("image/png") << false;
}

void TestLinkDrop::dragIsAnswered()
{
    QFETCH(QString, format);
    QMimeData data;
    data.setData(format, "x");
    // A source that proposes to move deletes its file when that is accepted.
    QDragEnterEvent event({}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.setDropAction(Qt::MoveAction);
    links::answerLinkDrag(event);
    QTEST(event.isAccepted(), "accepted");
    QCOMPARE(event.dropAction(), Qt::CopyAction);
}

void TestLinkDrop::textIsHandedOverLater()
{
    QTemporaryDir root;
    Config config(root.filePath(QStringLiteral("D")), root.filePath(QStringLiteral("S")));
    model::addTile(config);
    const QUuid id = config.tileItems().constFirst().id;
    config.editTile(id, [](TileItem &tile) { tile.tileMenuItems.clear(); });
    {
        QMimeData data;
        fill(data, {{plain, "https://example.org and mailto:a@example.org"}});
        QVERIFY(links::handleLinkDrop(config, data, id));
        QVERIFY(config.tile(id)->tileMenuItems.isEmpty());
    }
    QCoreApplication::processEvents();
    QCOMPARE(config.tile(id)->tileMenuItems.size(), 2);
    QCOMPARE(config.tile(id)->tileMenuItems.constFirst().itemString, QStringLiteral("https://example.org"));
}

void TestLinkDrop::tileMayGoMeanwhile()
{
    QTemporaryDir root;
    Config config(root.filePath(QStringLiteral("D")), root.filePath(QStringLiteral("S")));
    model::addTile(config);
    const QUuid id = config.tileItems().constFirst().id;
    QMimeData data;
    fill(data, {{uriList, "file:///tmp"}});
    QVERIFY(links::handleLinkDrop(config, data, id));
    model::removeTile(config, id);
    QCoreApplication::processEvents();
    QVERIFY(config.tileItems().isEmpty());
}

void TestLinkDrop::fileAddresses_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<int>("added");
    QTest::newRow("plain") << QByteArray("file://PATH") << 1;
    QTest::newRow("without authority") << QByteArray("file:PATH") << 1;
    QTest::newRow("localhost") << QByteArray("FILE://LocalHost/PATH") << 1;
    QTest::newRow("own name") << "file://" + QSysInfo::machineHostName().toUtf8() + "PATH" << 1;
    QTest::newRow("another machine") << QByteArray("file://other.example/PATH") << 0;
    QTest::newRow("NUL") << QByteArray("file://PATH%00") << 0;
    QTest::newRow("relative") << QByteArray("file:a.txt") << 0;
    QTest::newRow("no path") << QByteArray("file://") << 0;
    QTest::newRow("other scheme") << QByteArray("sftp://localhost/PATH") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
}

void TestLinkDrop::fileAddresses()
{
    QFETCH(QByteArray, address);
    QTemporaryDir root;
    Config config(root.filePath(QStringLiteral("D")), root.filePath(QStringLiteral("S")));
    model::addTile(config);
    const QUuid id = config.tileItems().constFirst().id;
    config.editTile(id, [](TileItem &tile) { tile.tileMenuItems.clear(); });
    const QString path = root.filePath(QStringLiteral("My File.txt"));
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    links::receiveDroppedFile(config, address.replace("PATH", QFile::encodeName(path).toPercentEncoding("/")),
                              id);
    const QList<TileMenuItem> added = config.tile(id)->tileMenuItems;
    QTEST(int(added.size()), "added");
    for (const TileMenuItem &link : added) {
        QCOMPARE(link.itemName, QStringLiteral("MyFile"));
        QCOMPARE(links::linkKind(link), QStringLiteral("documentAlias"));
    }
}

void TestLinkDrop::bytesThatAreNoTextAddNothing()
{
    QTemporaryDir root;
    Config config(root.filePath(QStringLiteral("D")), root.filePath(QStringLiteral("S")));
    model::addTile(config);
    const TileItem before = config.tileItems().constFirst();
    links::receiveDroppedText(config, "https://example.org \xff", before.id);
    QCOMPARE(config.tileItems().constFirst(), before);
}

QTEST_MAIN(TestLinkDrop)
#include "tst_linkdrop.moc"
