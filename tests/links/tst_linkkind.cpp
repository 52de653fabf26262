// SPDX-License-Identifier: MIT
#include "onetile.h"

#include "links/linkkind.h"
#include "platform/aliasfile.h"
#include "support/recordinglinkopener.h"

#include <QRegularExpression>

class TestLinkKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addresses();
    void paths();
};

static TileMenuItem linkTo(const QString &text)
{
    TileMenuItem link;
    link.itemString = text;
    return link;
}

/// The kind of what is no path, and whether a click asks for that address or prints that it is none.
void TestLinkKind::addresses()
{
    // The text before the NUL names a folder; cut there it would have been taken for it.
    const QString nul = u"/tmp"_qs + QChar(0) + u'x', unknown = u"unknown"_qs;
    const std::tuple<QString, QString, bool> rows[] = {{u"HTTPS://Example.org/%7Ea"_qs, u"HTTPS"_qs, true},
                                                       {u"mailto:a@example.org"_qs, u"mailto"_qs, true},
                                                       {u"tel://"_qs, u"tel"_qs, true},
                                                       {u"example.org/a"_qs, unknown, true},
                                                       {u"https://a b"_qs, unknown, false},
                                                       {u"https://ä.example"_qs, unknown, false},
                                                       {u"https://h/%4"_qs, unknown, false},
                                                       {QString(), unknown, false},
                                                       {u"/no/such file"_qs, unknown, false},
                                                       {nul, unknown, false}};
    for (const auto &[address, kind, opens] : rows) {
        support::RecordingLinkOpener opener;
        auto output = std::make_unique<StdoutCapture>();
        const QString found = links::linkKind(linkTo(address));
        links::openLink(linkTo(address), opener);
        const QStringList lines = output->lines();
        output.reset();
        QVERIFY2(found == kind, qPrintable(address));
        QCOMPARE(
            lines.filter(QRegularExpression(u"^Failed to resolve alias: .*domain POSIX, code "_qs)).size(),
            kind == unknown ? 2 : 0);
        QCOMPARE(lines.contains(u"Invalid URL"), !opens);
        QVERIFY2(opener.addresses == (opens ? QStringList{address} : QStringList()), qPrintable(address));
        QVERIFY(opener.files.isEmpty());
    }
}

void TestLinkKind::paths()
{
    const OneTile tile;
    tile.make(u"Calculator.app/"_qs);
    tile.make(u"My Folder/"_qs);
    tile.make(u"a.txt"_qs);
    QVERIFY(QFile::link(u"My Folder"_qs, tile.at(u"link"_qs)));
    const QString alias = tile.at(u"an alias"_qs);
    const std::pair<const char *, const char *> rows[] = {{"Calculator.app", "appAlias"},
                                                          {"My Folder", "folderAlias"},
                                                          {"a.txt", "documentAlias"},
                                                          {"link", "folderAlias"}};
    for (const auto &[name, kind] : rows) {
        const QString path = tile.at(QLatin1String(name));
        QVERIFY(platform::writeAliasFile(QFile::encodeName(path), QFile::encodeName(alias), nullptr));
        for (const TileMenuItem &link : {linkTo(path), linkTo(alias)})
            QVERIFY2(links::linkKind(link) == QLatin1String(kind) && links::isAlias(link), name);
    }
    support::RecordingLinkOpener opener;
    links::openLink(linkTo(alias), opener);
    QVERIFY(opener.files == QStringList{alias} && opener.addresses.isEmpty());
}

QTEST_GUILESS_MAIN(TestLinkKind)
#include "tst_linkkind.moc"
