// SPDX-License-Identifier: MIT
#include "onetile.h"

#include "links/linkdrop.h"
#include "links/linkkind.h"

#include <QDropEvent>
#include <QMimeData>
#include <QSysInfo>

using links::DroppedItem;

namespace {

using Formats = QList<std::pair<const char *, QByteArray>>;

struct Data : QMimeData
{
    explicit Data(const Formats &formats)
    {
        for (const auto &[format, bytes] : formats)
            setData(QLatin1String(format), bytes);
    }
};

constexpr auto uriList = "text/uri-list", plain = "text/plain", plainUtf8 = "text/plain;charset=utf-8",
               mozUrl = "text/x-moz-url";

QByteArray utf16(const QString &text)
{
    return {reinterpret_cast<const char *>(text.utf16()), text.size() * 2};
}

} // namespace

class TestLinkDrop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatCounts()
    {
        const QByteArray list = "file:///home/u/My%20File.txt\r\nfile:///home/u/b%C3%A9\r\n";
        const QByteArray file = "file:///home/u/My%20File.txt", page = "https://e.org/";
        const auto check = [](const Formats &formats, const QByteArray &bytes) {
            const std::optional<DroppedItem> item = links::droppedItem(Data(formats));
            const bool isFile = bytes.startsWith("file:");
            QVERIFY2(item ? (item->kind == DroppedItem::Kind::File) == isFile && item->bytes == bytes
                          : bytes.isEmpty(),
                     qPrintable(QDebug::toString(formats)));
        };
        // The list of files counts when the text beside it says the same.
        for (const QByteArray &beside :
             {list, QByteArray("/home/u/My File.txt /home/u/b\u00e9"),
              QByteArray("'/home/u/My File.txt' '/home/u/b\u00e9'\n"), QByteArray("My File.txt, b\u00e9"),
              QByteArray("/home/u/My File.txt") + '\0',
              QByteArray("file:///home/u/My File.txt\nfile:///home/u/b%c3%a9"), QByteArray("")})
            check({{uriList, "# x\r\n\r\n" + list}, {plain, beside}}, file);
        check({{uriList, list}}, file);
        check({{uriList, "file:///a/%FF"}, {plain, "/a/\xff"}}, "file:///a/%FF");
        check({{uriList, "file:///a/b/"}, {plain, "/a/b"}}, "file:///a/b/");
        for (const char *text : {"see https://example.org", "My File.txt.bak"})
            check({{uriList, list}, {plain, text}}, text);
        check({{plain, "caf?"}, {"text/plain;charset=UTF-8", "caf\u00e9"}}, "caf\u00e9");
        check({{uriList, page + "\r\nfile:///a\r\n"}, {"text/html", "<a>"}}, page);
        check({{uriList, page}, {plain, page}}, page);
        check({{uriList, "file:///x.png"}, {mozUrl, utf16(u"https://e.org/\nA title"_qs)}}, page);
        check({{"_NETSCAPE_URL", "https://e.org/\nA title"}}, page);
        check({{mozUrl, QByteArray("h\0t", 3)}}, QByteArray("h\0t", 3));
        for (const char *format : {uriList, "image/png", "text/html"})
            check({{format, "# x\r\n"}}, {});
    }

    void dragIsAnswered()
    {
        for (const char *format : {uriList, plainUtf8, "_NETSCAPE_URL", "image/png"}) {
            const Data data(Formats{{format, "x"}});
            // A source that proposes to move deletes its file when that is accepted.
            QDragEnterEvent event({}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
            event.setDropAction(Qt::MoveAction);
            links::answerLinkDrag(event);
            QVERIFY2(event.isAccepted() == (format != std::string_view("image/png")), format);
            QCOMPARE(event.dropAction(), Qt::CopyAction);
        }
    }

    void dropIsHandedOverLater()
    {
        OneTile tile;
        const Data text(Formats{{plain, "https://a.org mailto:a@b.org"}}),
            file(Formats{{uriList, "file:///tmp"}});
        QVERIFY(links::handleLinkDrop(tile.config, text, tile.id));
        QVERIFY(tile.links().isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(tile.addresses(), QStringList({u"https://a.org"_qs, u"mailto:a@b.org"_qs}));
        // Bytes that are no text add nothing.
        links::receiveDroppedText(tile.config, "https://example.org \xff", tile.id);
        QCOMPARE(tile.links().size(), 2);
        // The tile may go meanwhile.
        QVERIFY(links::handleLinkDrop(tile.config, file, tile.id));
        model::removeTile(tile.config, tile.id);
        QCoreApplication::processEvents();
        QVERIFY(tile.config.tileItems().isEmpty());
    }

    void fileAddresses()
    {
        OneTile tile;
        const QByteArray path = QFile::encodeName(tile.make(u"My File.txt"_qs)).toPercentEncoding("/");
        for (const QByteArray &none :
             {"file://other.example/" + path, "file://" + path + "%00", QByteArray("file:a.txt"),
              QByteArray("file://"), "sftp://localhost/" + path}) {
            links::receiveDroppedFile(tile.config, none, tile.id);
            QVERIFY2(tile.links().isEmpty(), none.constData());
        }
        int count = 0;
        for (const QByteArray &begin :
             {QByteArray("file://"), QByteArray("file:"), QByteArray("FILE://LocalHost/"),
              "file://" + QSysInfo::machineHostName().toUtf8()}) {
            links::receiveDroppedFile(tile.config, begin + path, tile.id);
            QVERIFY2(tile.links().size() == ++count, begin.constData());
            QCOMPARE(links::linkKind(tile.links().constLast()), u"documentAlias"_qs);
        }
    }
};

QTEST_MAIN(TestLinkDrop)
#include "tst_linkdrop.moc"
