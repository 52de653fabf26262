// SPDX-License-Identifier: MIT
// A home full of traps, met by all that reads it: no program is started, nothing is waited for, little is
// kept.
#include "links/linkdrop.h"
#include "links/linkimport.h"
#include "links/openlink.h"
#include "platform/addressopener.h"
#include "platform/files.h"
#include "platform/workspace.h"
#include "strip/contentview.h"
#include "strip/scratchpadview.h"
#include "strip/startup.h"
#include "support/privatedesktop.h"
#include "support/stripworld.h"
#include "themes/iconstore.h"
#include "themes/themestore.h"

#include <QApplication>
#include <QDir>
#include <QShowEvent>
#include <QTest>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 mostMemory = 1 << 20; // KiB, most of it the sanitizers'; a trap takes all there is

const QByteArrayList payloads =
    QByteArray("javascript:alert(1)|data:text/html,<script>|file:///dev/zero|file:///dev/tty|/proc/self/mem|"
               "file:///proc/self/fd/0|-rf|--help|$(touch ran)|; touch ran|https://a.example/\n--flag|"
               "ssh://-oProxyCommand=touch%20ran|ssh://$(touch ran)@a|HOME/pipe|file://HOME/pipe|HOME/loop|"
               "HOME/alias to pipe|HOME/alias to itself|HOME/alias to mem|HOME/alias to "
               "zero|HOME/endless|HOME/x.desktop|"
               "file://HOME/../../../dev/zero|file:///%00")
        .split('|')
    + QByteArrayList{QByteArray("a\0b", 3), QByteArray(100'000, '/'),
                     "https://" + QByteArray(100'000, 'a') + ".example/"};

class Opener : public links::LinkOpener
{
public:
    void openFile(const QString &path) override { platform::openFile(path); }
    void openAddress(const QString &text) override { platform::openAddress(text); }
};

/// All that the program does with what lies in the home.
bool lookAtEverything(const QString &home)
{
    ::alarm(200); // instead of waiting for ever
    Config config(home + u"/Documents"_qs, home + u"/state"_qs);
    strip::loadOrCreateSettings(config);
    Opener opener;
    FakeFilePanel panel;
    StripServices services{opener, panel, [] {}};
    ContentView view(config, services);
    view.grab();
    for (const QString &icon : themes::currentThemeIconNames(config).mid(0, 10))
        themes::iconImage(config, icon);
    for (const TileItem &tile : config.tileItems().mid(0, 30)) {
        for (const TileMenuItem &link : tile.tileMenuItems)
            links::openLink(link, opener);
        QShowEvent shown;
        ScratchpadView pad(config, tile.id, nullptr);
        QCoreApplication::sendEvent(&pad, &shown);
        links::importLinksFromPath(config, tile.id, home + u"/pipe"_qs);
        for (const QByteArray &payload : tile == config.tileItems().first() ? payloads : QByteArrayList()) {
            links::receiveDroppedText(config, payload, tile.id);
            links::receiveDroppedFile(config, payload, tile.id);
        }
    }
    view.redraw();
    view.grab();
    rusage usage;
    return ::getrusage(RUSAGE_SELF, &usage) == 0 && usage.ru_maxrss < mostMemory;
}

} // namespace

class TestHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingRunsBlocksOrGrows();

private:
    void meet(QByteArray settings);
};

void TestHostile::nothingRunsBlocksOrGrows()
{
    QByteArrayList links;
    for (QByteArray payload : payloads)
        links += R"({"id":"1A2B3C4D-5E6F-4071-8293-A4B5C6D7E8F9","itemName":"","itemString":")"
            + payload.replace('\n', "\\n").replace('\0', "\\u0000") + "\"}";
    QByteArrayList tiles; // all with the same id
    for (const char *folder : {"//HOME/pipes", "//HOME/pipe", "///dev", "///proc/self/fd", "x"})
        tiles +=
            R"({"id":"7C1D2E3F-4A5B-4C6D-8E9F-0A1B2C3D4E5F","iconName":"../../pipe","tileName":"`touch ran`",
                "showsScratchpad":true,"scratchpadText":"","tileDirectory":"file:)"
            + QByteArray(folder) + "\",\"tileMenuItems\":[" + links.join(',') + "]}";
    const auto settings = [](const char *theme, const QByteArray &tileItems) {
        return R"({"availableThemes":[],"showsDate":true,"direction":"ltr","appIcon":"../pipe","currentTheme":")"
            + QByteArray(theme) + "\",\"tileItems\":[" + tileItems + "]}";
    };
    meet(settings("traps", tiles.join(',')));
    meet(settings("../../../../../dev", tiles.join(',')));
    meet(settings("1984", '1' + QByteArray(1 << 20, '0')));
    meet(settings("1984", QByteArray("[{\"a\":").repeated(100'000)));
    meet(QByteArray(1 << 20, '\0'));
    meet("a pipe");
    meet("a device");
}

/// In a home of its own with traps and these settings.
void TestHostile::meet(QByteArray settings)
{
    const support::PrivateDesktop desktop;
    const QString home = desktop.path(u"home/"_qs);
    const QString folder = home + u"Documents/pondWicket \u0192/"_qs;
    const QString theme = folder + u"Themes/traps/"_qs;
    for (const QString &made :
         {folder + u"Tiles"_qs, theme + u"Chrome"_qs, theme + u"Icons"_qs, home + u"pipes"_qs})
        QVERIFY(QDir().mkpath(made));
    const QString file = folder + u"pondWicket-settings.json"_qs;
    QStringList pipes = {home + u"pipe"_qs, home + u"pipes/Notes.txt"_qs, theme + u"Chrome/tile.png"_qs};
    QList<std::pair<QString, QString>> links = {{u"/dev/zero"_qs, theme + u"Chrome/home.png"_qs},
                                                {u"/proc/self/mem"_qs, theme + u"Chrome/close.png"_qs},
                                                {u"/"_qs, theme + u"Icons/root.png"_qs},
                                                {u"../../traps"_qs, theme + u"Icons/deep"_qs},
                                                {u"loop"_qs, home + u"loop"_qs}};
    if (settings == "a pipe")
        pipes += file;
    else if (settings == "a device")
        links.append({u"/dev/zero"_qs, file});
    else
        QVERIFY(platform::writeInPlace(file, settings.replace("HOME", home.chopped(1).toUtf8()), nullptr));
    for (int i = 0; i < 20'000 && settings.contains("\"traps"); ++i)
        links.append({u"/dev/zero"_qs, theme + u"Icons/%1.png"_qs.arg(i)});
    for (const QString &pipe : std::as_const(pipes))
        QVERIFY(::mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0);
    for (const auto &[target, link] : std::as_const(links))
        QVERIFY(QFile::link(target, link));
    for (const auto &[name, bytes] : std::initializer_list<std::pair<QString, QByteArray>>{
             {home + u"endless"_qs, "pondWicket alias 1\npath: /"},
             {home + u"x.desktop"_qs, "[Desktop Entry]\nType=Application\nName=x\nExec=touch ran\n"},
             {theme + u"Chrome/minimize.png"_qs,
              "<svg xmlns='http://www.w3.org/2000/svg' width='99999' height='99999'><image href='"
                  + home.toUtf8() + "pipe' width='9' height='9'/></svg>"}})
        QVERIFY(platform::writeInPlace(name, bytes, nullptr));
    QVERIFY(QFile::resize(home + u"endless"_qs, 1LL << 40));
    for (const char *program : {"sh", "touch", "ssh", "xdg-open", "xdg-terminal-exec"})
        desktop.addProgram(QLatin1String(program));
    for (const QString &target :
         {home + u"pipe"_qs, u"/dev/zero"_qs, u"/proc/self/mem"_qs, home + u"alias to itself"_qs})
        QVERIFY(platform::writeInPlace(home + u"alias to "_qs + target.section(u'/', -1).section(u' ', -1),
                                       "pondWicket alias 1\npath: " + target.toUtf8() + '\n', nullptr));
    const auto outcome = desktop.run({u"--look"_qs}, home.chopped(1).toUtf8());
    QVERIFY2(outcome.exitCode == 0, (settings.left(100) + outcome.output.left(5000)).constData());
    QCOMPARE(outcome.output.startsWith("Failed to load icon: ../pipe"), settings.contains("`touch")); // read
    QVERIFY(outcome.launches.isEmpty());
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (application.arguments().value(1) == u"--look")
        return lookAtEverything(QString::fromUtf8(support::readInput())) ? 0 : 1;
    TestHostile test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_hostile.moc"
