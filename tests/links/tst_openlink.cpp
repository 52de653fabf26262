// SPDX-License-Identifier: MIT
#include "links/openlink.h"
#include "platform/aliasfile.h"
#include "support/recordinglinkopener.h"
#include "support/stdoutcapture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestOpenLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksForTheRightThing();
};

void TestOpenLink::asksForTheRightThing()
{
    support::RecordingLinkOpener opener;
    QStringList lines;
    const auto open = [&](const QString &text) {
        opener.addresses.clear();
        StdoutCapture output;
        TileMenuItem link;
        link.itemString = text;
        links::openLink(link, opener);
        lines = output.lines();
        lines.removeIf([](const QString &line) { return line.startsWith(u"Failed to resolve alias: "); });
    };
    for (const QString &text : {u"tel://"_qs, u"HTTPS://Example.org/%7Ea"_qs, u"example.org/a"_qs}) {
        open(text);
        QCOMPARE(opener.addresses, QStringList{text});
        QCOMPARE(lines, QStringList());
    }
    for (const QString &text :
         {QString(), u"https://a b"_qs, u"https://ä.example"_qs, u"https://h/%4"_qs, u"/no such/file"_qs}) {
        open(text);
        QVERIFY2(opener.addresses.isEmpty(), qPrintable(text));
        QVERIFY2(lines == QStringList{u"Invalid URL"_qs}, qPrintable(text));
    }
    QCOMPARE(opener.files, QStringList());
    QTemporaryDir folder;
    const QString alias = folder.filePath(u"an alias"_qs);
    QVERIFY(platform::writeAliasFile("/usr", QFile::encodeName(alias), nullptr));
    open(alias);
    QCOMPARE(opener.files, QStringList{alias});
    QCOMPARE(opener.addresses, QStringList());
}

QTEST_GUILESS_MAIN(TestOpenLink)
#include "tst_openlink.moc"
