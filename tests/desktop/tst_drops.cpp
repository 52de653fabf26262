// SPDX-License-Identifier: MIT
// Drags onto the running strip from another process, which offers what file managers and browsers do.
#include "platform/aliasfile.h"
#include "support/files.h"
#include "support/program.h"

#include <QDrag>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QMouseEvent>
#include <QRasterWindow>
#include <QTest>

#include <cstdio>
#include <map>

using namespace support;

namespace {

using Formats = std::map<QByteArray, QByteArray>;

/// A window that is dragged out of, to be moved. Writes what it is answered, and ends when the data was
/// taken. Arguments: the actions that it allows, then what it offers.
class Source : public QRasterWindow
{
    void mouseMoveEvent(QMouseEvent *) override
    {
        auto *drag = new QDrag(this);
        drag->setMimeData(new QMimeData);
        const QStringList arguments = QCoreApplication::arguments().sliced(2);
        for (const QString &offer : arguments.sliced(1))
            drag->mimeData()->setData(offer.section(u' ', 0, 0),
                                      QByteArray::fromPercentEncoding(offer.section(u' ', 1).toLatin1()));
        connect(drag, &QDrag::actionChanged, [](Qt::DropAction answer) {
            std::puts(answer == Qt::CopyAction ? "copy" : answer == Qt::MoveAction ? "move" : "none");
            std::fflush(stdout);
        });
        connect(drag, &QObject::destroyed, [] { std::_Exit(EXIT_SUCCESS); });
        drag->exec(Qt::DropActions(arguments.first().toInt()), Qt::MoveAction);
    }
};

/// True when the source was answered that it is a copy, and nothing else before.
bool isCopied(const Desktop &desktop, QPoint place, Qt::DropActions allowed, const Formats &formats)
{
    QStringList arguments = {u"--drag"_qs, QString::number(allowed.toInt())};
    for (const auto &[format, bytes] : formats)
        arguments += QString::fromLatin1(format + ' ' + bytes.toPercentEncoding());
    Program source(desktop, QCoreApplication::applicationFilePath(), arguments);
    desktop.moveTo(source.waitForWindow().geometry.center());
    desktop.press();
    for (const int distance : {300, 5, 0})
        desktop.moveTo(place - QPoint(0, distance));
    waitUntil([&] { return source.lines().contains(u"copy"_qs); });
    desktop.moveTo(place + QPoint(1, 0)); // the drop before may have put a new tile in the old one's place
    desktop.release();
    return source.waitForExit() == 0 && !source.lines().contains(u"move"_qs);
}

/// The links of the first tile as the settings file has them: "label -> address", alias files followed.
QByteArray linksIn(const QString &settingsFile)
{
    QByteArray found;
    const auto settings = QJsonDocument::fromJson(bytesOf(settingsFile));
    for (const auto &link : settings[u"tileItems"][0][u"tileMenuItems"].toArray()) {
        const QString address = link[u"itemString"].toString();
        const auto record = platform::parseAlias(bytesOf(address), nullptr);
        found += link[u"itemName"].toString().toUtf8() + " -> " + (record ? record->path : address.toUtf8())
            + '\n';
    }
    return found;
}

Formats asOfFileManager(const QByteArrayList &paths)
{
    QByteArray list;
    for (const QByteArray &path : paths)
        list += "file://" + path.toPercentEncoding("/") + "\r\n";
    return {{"text/uri-list", list},
            {"text/plain;charset=utf-8", paths.join('\n')},
            {"x-special/gnome-icon-list", list},
            {"application/vnd.portal.filetransfer", "key"}};
}

Formats asOfBrowser(const QByteArray &address)
{
    const QString titled = QString::fromLatin1(address) + u"\nA title"_qs;
    return {{"text/x-moz-url", {reinterpret_cast<const char *>(titled.utf16()), titled.size() * 2}},
            {"_NETSCAPE_URL", titled.toLatin1()},
            {"text/uri-list", address},
            {"text/html", "<a href=\"" + address + "\">A title</a>"},
            {"text/plain", address}};
}

} // namespace

class TestDrops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dropsMakeLinks()
    {
        Desktop desktop;
        QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
        Program program(desktop, QStringLiteral(PW_PROGRAM));
        const Window strip = program.waitForWindow();
        QVERIFY2(!strip.isNull(), qPrintable(program.errors()));
        const QPoint tile = strip.at(14 + 44 + 22, 22); // behind the home tile
        QByteArray expected = linksIn(desktop.settingsFile());

        const QByteArray home = QFile::encodeName(desktop.home());
        const QByteArray folder = home + "/Documents", application = home + "/x.desktop";
        const QByteArrayList three = {home + "/My File.txt", home + "/b", home + "/c"};
        for (const QByteArray &path : three + QByteArrayList{application})
            make(QFile::decodeName(path), "[Desktop Entry]\nType=Application\nName=An X\n");
        Formats textWithFile = asOfFileManager({three.last()});
        textWithFile["text/plain;charset=utf-8"] = "not this file: http://f.example";
        const std::tuple<const char *, Formats, QByteArray> rows[] = {
            {"a file", asOfFileManager({three.last()}), "c -> " + three.last() + '\n'},
            {"three files", asOfFileManager(three), "MyFile -> " + three.first() + '\n'},
            {"a folder", asOfFileManager({folder}), "Documents -> " + folder + '\n'},
            {"an application", asOfFileManager({application}), "AnX -> " + application + '\n'},
            {"a web link", asOfBrowser("https://e.example/x"), "e.example -> https://e.example/x\n"},
            {"text",
             {{"text/plain;charset=utf-8", "see http://a.example, m@example.org"}},
             "a.example -> http://a.example\nUntitled -> mailto:m@example.org\n"},
            {"text with files", textWithFile, "f.example -> http://f.example\n"},
            {"not UTF-8", {{"text/plain;charset=utf-8", "http://g.example \xff"}}, ""},
            {"a file after that", asOfFileManager(three), "MyFile -> " + three.first() + '\n'}};
        // Whoever names the move alone, as file managers do while Shift is held, was answered so and deletes
        // the file.
        for (const Qt::DropActions allowed :
             {Qt::DropActions(Qt::MoveAction), Qt::CopyAction | Qt::MoveAction}) {
            for (const auto &[name, formats, links] : rows) {
                QVERIFY2(isCopied(desktop, tile, allowed, formats), name);
                expected += links;
                QTRY_VERIFY2(linksIn(desktop.settingsFile()) == expected, name);
            }
        }
    }
};

int main(int argc, char **argv)
{
    if (argc > 1 && QByteArrayView(argv[1]) == "--drag") {
        const QGuiApplication application(argc, argv);
        Source source;
        source.setGeometry(600, 300, 200, 200);
        source.show();
        return QGuiApplication::exec();
    }
    QCoreApplication application(argc, argv);
    TestDrops test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_drops.moc"
