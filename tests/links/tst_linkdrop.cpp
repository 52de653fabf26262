// SPDX-License-Identifier: MIT
#include "links/linkdrop.h"
#include "links/linkkind.h"
#include "model/tiles.h"

#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QtTest>

using links::DroppedItem;

class TestLinkDrop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatCounts();
    void dragIsAnswered();
    void textIsHandedOverLater();
    void tileMayGoMeanwhile();
    void fileAddresses();
};

namespace {

using Formats = QList<std::pair<const char *, QByteArray>>;

constexpr auto uriList = "text/uri-list";
constexpr auto plain = "text/plain";
constexpr auto plainUtf8 = "text/plain;charset=utf-8";
constexpr auto mozUrl = "text/x-moz-url";

void fill(QMimeData &data, const Formats &formats)
{
    for (const auto &[format, bytes] : formats)
        data.setData(QLatin1String(format), bytes);
}

QByteArray utf16(const QString &text)
{
    return {reinterpret_cast<const char *>(text.utf16()), text.size() * 2};
}

/// One tile without links.
struct Strip
{
    Strip()
    {
        model::addTile(config);
        id = config.tileItems().constFirst().id;
        config.editTile(id, [](TileItem &tile) { tile.tileMenuItems.clear(); });
    }
    QList<TileMenuItem> links() const { return config.tile(id)->tileMenuItems; }

    const QTemporaryDir root;
    Config config{root.filePath(QStringLiteral("D")), root.filePath(QStringLiteral("S"))};
    QUuid id;
};

} // namespace

void TestLinkDrop::whatCounts()
{
    const QByteArray list = "file:///home/u/My%20File.txt\r\nfile:///home/u/b%C3%A9\r\n";
    const auto check = [](const Formats &formats, std::optional<DroppedItem::Kind> kind,
                          const QByteArray &bytes) {
        QMimeData data;
        fill(data, formats);
        const std::optional<DroppedItem> item = links::droppedItem(data);
        QVERIFY2(item.has_value() == kind.has_value(), qPrintable(QDebug::toString(formats)));
        QVERIFY2(!item || (item->kind == *kind && item->bytes == bytes),
                 qPrintable(QDebug::toString(formats)));
    };
    // The list of files counts when the text beside it says the same.
    for (const QByteArray &text :
         {list, QByteArray("/home/u/My File.txt /home/u/b\u00e9"),
          QByteArray("'/home/u/My File.txt' '/home/u/b\u00e9'\n"), QByteArray("My File.txt, b\u00e9"),
          QByteArray("/home/u/My File.txt") + '\0',
          QByteArray("file:///home/u/My File.txt\nfile:///home/u/b%c3%a9"), QByteArray("")})
        check({{uriList, "# x\r\n\r\n" + list}, {plain, text}}, DroppedItem::Kind::File,
              "file:///home/u/My%20File.txt");
    check({{uriList, list}}, DroppedItem::Kind::File, "file:///home/u/My%20File.txt");
    check({{uriList, "file:///a/%FF"}, {plain, "/a/\xff"}}, DroppedItem::Kind::File, "file:///a/%FF");
    check({{uriList, "file:///a/b/"}, {plain, "/a/b"}}, DroppedItem::Kind::File, "file:///a/b/");
    const std::pair<Formats, QByteArray> texts[] = {
        {{{uriList, list}, {plain, "see https://example.org"}}, "see https://example.org"},
        {{{uriList, list}, {plain, "My File.txt.bak"}}, "My File.txt.bak"},
        {{{plain, "caf?"}, {plainUtf8, "caf\u00e9"}}, "caf\u00e9"},
        {{{"text/plain;charset=UTF-8", "x"}}, "x"},
        {{{uriList, "https://e.org/\r\nfile:///a\r\n"}}, "https://e.org/"},
        {{{uriList, "https://e.org/"}, {plain, "https://e.org/"}, {"text/html", "<a>"}}, "https://e.org/"},
        {{{mozUrl, utf16(QStringLiteral("https://e.org/\nA title"))}}, "https://e.org/"},
        {{{"_NETSCAPE_URL", "https://e.org/\nA title"}}, "https://e.org/"},
        {{{uriList, "file:///x.png"}, {mozUrl, utf16(QStringLiteral("https://e.org/x"))}}, "https://e.org/x"},
        {{{mozUrl, QByteArray("h\0t", 3)}}, QByteArray("h\0t", 3)}};
    for (const auto &[formats, bytes] : texts)
        check(formats, DroppedItem::Kind::Text, bytes);
    for (const Formats &refused :
         {Formats{{uriList, "# x\r\n"}}, Formats{{"image/png", "x"}}, Formats{{"text/html", "<a>"}}})
        check(refused, std::nullopt, {});
}

void TestLinkDrop::dragIsAnswered()
{
    for (const char *format : {uriList, plainUtf8, "_NETSCAPE_URL", "image/png"}) {
        QMimeData data;
        fill(data, {{format, "x"}});
        // A source that proposes to move deletes its file when that is accepted.
        QDragEnterEvent event({}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.setDropAction(Qt::MoveAction);
        links::answerLinkDrag(event);
        QVERIFY2(event.isAccepted() == (format != std::string_view("image/png")), format);
        QCOMPARE(event.dropAction(), Qt::CopyAction);
    }
}

void TestLinkDrop::textIsHandedOverLater()
{
    Strip strip;
    {
        QMimeData data;
        fill(data, {{plain, "https://example.org and mailto:a@example.org"}});
        QVERIFY(links::handleLinkDrop(strip.config, data, strip.id));
        QVERIFY(strip.links().isEmpty());
    }
    QCoreApplication::processEvents();
    QCOMPARE(strip.links().size(), 2);
    QCOMPARE(strip.links().constFirst().itemString, QStringLiteral("https://example.org"));
    // Bytes that are no text add nothing.
    links::receiveDroppedText(strip.config, "https://example.org \xff", strip.id);
    QCOMPARE(strip.links().size(), 2);
}

void TestLinkDrop::tileMayGoMeanwhile()
{
    Strip strip;
    QMimeData data;
    fill(data, {{uriList, "file:///tmp"}});
    QVERIFY(links::handleLinkDrop(strip.config, data, strip.id));
    model::removeTile(strip.config, strip.id);
    QCoreApplication::processEvents();
    QVERIFY(strip.config.tileItems().isEmpty());
}

void TestLinkDrop::fileAddresses()
{
    Strip strip;
    const QString path = strip.root.filePath(QStringLiteral("My File.txt"));
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    const auto drop = [&](QByteArray address) {
        address.replace("PATH", QFile::encodeName(path).toPercentEncoding("/"));
        links::receiveDroppedFile(strip.config, address, strip.id);
    };
    for (const char *none : {"file://other.example/PATH", "file://PATH%00", "file:a.txt", "file://",
                             "sftp://localhost/PATH", ""}) {
        drop(none);
        QVERIFY2(strip.links().isEmpty(), none);
    }
    int count = 0;
    for (const QByteArray &address :
         {QByteArray("file://PATH"), QByteArray("file:PATH"), QByteArray("FILE://LocalHost/PATH"),
          "file://" + QSysInfo::machineHostName().toUtf8() + "PATH"}) {
        drop(address);
        QVERIFY2(strip.links().size() == ++count, address.constData());
        QCOMPARE(strip.links().constLast().itemName, QStringLiteral("MyFile"));
        QCOMPARE(links::linkKind(strip.links().constLast()), QStringLiteral("documentAlias"));
    }
}

QTEST_MAIN(TestLinkDrop)
#include "tst_linkdrop.moc"
