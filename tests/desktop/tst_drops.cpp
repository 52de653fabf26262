// SPDX-License-Identifier: MIT
// Drags onto the running strip. Those of a second process are what programs of our toolkit do; the others are
// made here message by message, to offer what file managers and browsers do under the names that those use.
#include "platform/aliasfile.h"
#include "platform/files.h"
#include "support/program.h"

#include <QDir>
#include <QDrag>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QMouseEvent>
#include <QRasterWindow>
#include <QTest>

#include <array>
#include <cstdio>
#include <map>

#include <X11/Xatom.h>
#include <X11/Xlib.h>

using namespace support;

namespace {

using Formats = std::map<QByteArray, QByteArray>;

/// The other end of the drag protocol.
class Source
{
public:
    Source(const Desktop &desktop, const Formats &formats)
        : m_display(XOpenDisplay(qPrintable(desktop.environment().value(u"DISPLAY"_qs))))
        , m_window(XCreateSimpleWindow(m_display, DefaultRootWindow(m_display), 0, 0, 1, 1, 0, 0, 0))
    {
        XSetSelectionOwner(m_display, atom("XdndSelection"), m_window, CurrentTime);
        std::vector<Atom> types;
        for (const auto &[format, bytes] : formats)
            m_offered[types.emplace_back(atom(format.constData()))] = bytes;
        put(m_window, atom("XdndTypeList"), XA_ATOM, 32, types.data(), types.size());
    }
    ~Source() { XCloseDisplay(m_display); }
    Q_DISABLE_COPY_MOVE(Source)

    /// Proposes a move, drops if it may, and tells what the strip answered.
    QByteArray drag(const support::Window &strip, QPoint place)
    {
        const auto proposed = long(atom("XdndActionMove")), copy = long(atom("XdndActionCopy"));
        send(strip, "XdndEnter", {5 << 24 | 1});
        XClientMessageEvent status = {};
        for (int move = 0; move < 2;
             ++move) { // the drop before may have put a new tile in the old one's place
            send(strip, "XdndPosition", {0, place.x() << 16 | place.y(), CurrentTime, proposed});
            status = answer("XdndStatus");
        }
        const bool mayDrop = status.data.l[1] & 1;
        send(strip, mayDrop ? "XdndDrop" : "XdndLeave");
        if (!mayDrop)
            return "refused";
        return status.data.l[4] == copy && answer("XdndFinished").data.l[2] == copy ? "copied" : "";
    }

private:
    Atom atom(const char *name) const { return XInternAtom(m_display, name, False); }
    void put(::Window window, Atom name, Atom type, int bits, const void *data, size_t size) const
    {
        XChangeProperty(m_display, window, name, type, bits, PropModeReplace,
                        static_cast<const uchar *>(data), int(size));
    }
    void send(const support::Window &to, const char *type, std::array<long, 4> words = {}) const
    {
        XEvent event;
        event.xclient = {ClientMessage, 0, False, m_display, to.id.toULong(), atom(type), 32, {}};
        event.xclient.data.l[0] = long(m_window);
        std::copy(words.begin(), words.end(), event.xclient.data.l + 1);
        XSendEvent(m_display, event.xclient.window, False, NoEventMask, &event);
    }
    /// The strip's next message. Gives out the data meanwhile.
    XClientMessageEvent answer(const char *type)
    {
        XEvent event = {};
        waitUntil([&] {
            if (XPending(m_display) == 0 || XNextEvent(m_display, &event) != 0)
                return false;
            if (event.type == SelectionRequest)
                give(event.xselectionrequest);
            return event.type == ClientMessage && event.xclient.message_type == atom(type);
        });
        return event.xclient;
    }
    void give(const XSelectionRequestEvent &to)
    {
        const QByteArray bytes = m_offered[to.target];
        put(to.requestor, to.property, to.target, 8, bytes.data(), size_t(bytes.size()));
        XEvent event;
        event.xselection = {SelectionNotify, 0,         False,       m_display, to.requestor,
                            to.selection,    to.target, to.property, to.time};
        XSendEvent(m_display, to.requestor, False, NoEventMask, &event);
    }

    Display *m_display;
    ::Window m_window;
    std::map<Atom, QByteArray> m_offered;
};

/// A window that is dragged out of, to be moved. Writes what it is answered, and ends when the data was
/// taken.
class ToolkitSource : public QRasterWindow
{
    void mouseMoveEvent(QMouseEvent *) override
    {
        auto *drag = new QDrag(this);
        drag->setMimeData(new QMimeData);
        for (const QString &offer : QCoreApplication::arguments().sliced(2))
            drag->mimeData()->setData(offer.section(u' ', 0, 0),
                                      QByteArray::fromPercentEncoding(offer.section(u' ', 1).toLatin1()));
        connect(drag, &QDrag::actionChanged, [](Qt::DropAction answer) {
            std::puts(answer == Qt::CopyAction ? "copy" : answer == Qt::MoveAction ? "move" : "none");
            std::fflush(stdout);
        });
        connect(drag, &QObject::destroyed, [] { std::_Exit(EXIT_SUCCESS); });
        drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    }
};

/// Tells what the source was answered.
QByteArray dragOutOfToolkit(const Desktop &desktop, QPoint place, const Formats &formats)
{
    QStringList arguments = {u"--drag"_qs};
    for (const auto &[format, bytes] : formats)
        arguments += QString::fromLatin1(format + ' ' + bytes.toPercentEncoding());
    Program source(desktop, QCoreApplication::applicationFilePath(), arguments);
    desktop.moveTo(source.waitForWindow().geometry.center());
    desktop.press();
    for (const int distance : {300, 5, 0})
        desktop.moveTo(place - QPoint(0, distance));
    waitUntil([&] { return source.lines().contains(u"copy"_qs); });
    desktop.release();
    return source.waitForExit() == 0 && !source.lines().contains(u"move"_qs) ? "copied" : "not copied";
}

QByteArray contentOf(const QString &path)
{
    return platform::readWholeFile(path, nullptr).value_or(QByteArray());
}

/// The links of the first tile as the settings file has them: "label -> address", alias files followed.
QByteArray linksIn(const QString &settingsFile)
{
    QByteArray found;
    const auto settings = QJsonDocument::fromJson(contentOf(settingsFile));
    for (const auto &link : settings[u"tileItems"][0][u"tileMenuItems"].toArray()) {
        const QString address = link[u"itemString"].toString();
        const auto record = platform::parseAlias(contentOf(address), nullptr);
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
    void dropsMakeLinks();
};

void TestDrops::dropsMakeLinks()
{
    Desktop desktop;
    QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
    Program program(desktop, QStringLiteral(PW_PROGRAM));
    const support::Window strip = program.waitForWindow();
    QVERIFY2(!strip.isNull(), qPrintable(program.errors()));
    const QPoint tile = strip.at(14 + 44 + 22, 22); // behind the home tile
    QByteArray expected = linksIn(desktop.settingsFile());

    const QByteArray home = QFile::encodeName(desktop.home());
    const QByteArray folder = home + "/Documents", application = home + "/x.desktop";
    const QByteArrayList three = {home + "/My File.txt", home + "/b", home + "/c"};
    for (const QByteArray &path : three + QByteArrayList{application})
        QVERIFY(platform::writeAtomically(QFile::decodeName(path),
                                          "[Desktop Entry]\nType=Application\nName=An X\n", nullptr));
    Formats textWithFile = asOfFileManager({three.last()});
    textWithFile["text/plain;charset=utf-8"] = "not this file: http://f.example";
    const struct
    {
        QByteArray name;
        Formats formats;
        QByteArray links;
        bool isRefused = false;
    } rows[] = {
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
        {"an image", {{"image/png", "\x89PNG"}}, "", true},
        {"a file after those", asOfFileManager(three), "MyFile -> " + three.first() + '\n'},
    };
    for (const bool isToolkit : {false, true}) {
        for (const auto &[name, formats, links, isRefused] : rows) {
            if (isToolkit && isRefused)
                continue; // it would wait for a place to drop at
            const QByteArray answer = isToolkit ? dragOutOfToolkit(desktop, tile, formats)
                                                : Source(desktop, formats).drag(strip, tile);
            QVERIFY2(answer == (isRefused ? "refused" : "copied"), (name + ' ' + answer).constData());
            expected += links;
            QTRY_COMPARE(linksIn(desktop.settingsFile()), expected);
        }
    }
    for (const QByteArray &path : three)
        QVERIFY(QFile::exists(QFile::decodeName(path)));
}

int main(int argc, char **argv)
{
    if (argc > 1 && QByteArrayView(argv[1]) == "--drag") {
        const QGuiApplication application(argc, argv);
        ToolkitSource source;
        source.setGeometry(600, 300, 200, 200);
        source.show();
        return QGuiApplication::exec();
    }
    QCoreApplication application(argc, argv);
    TestDrops test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_drops.moc"
