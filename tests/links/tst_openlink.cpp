// SPDX-License-Identifier: MIT
#include "links/openlink.h"
#include "platform/aliasfile.h"
#include "support/recordinglinkopener.h"
#include "support/stdoutcapture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QStringList invalid = {QStringLiteral("Invalid URL")};

TileMenuItem linkTo(const QString &text)
{
    TileMenuItem link;
    link.itemString = text;
    return link;
}

} // namespace

class TestOpenLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksForTheRightThing_data();
    void asksForTheRightThing();
    void handsAliasFilesOver();
};

void TestOpenLink::asksForTheRightThing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("addresses");
    QTest::addColumn<bool>("isValid");

    const auto opened = [](const char *name, const QString &text) {
        QTest::newRow(name) << text << QStringList{text} << true;
    };
    opened("phone without a number", u"tel://"_qs);
    opened("nothing is folded", u"HTTPS://Example.org/%7Ea"_qs);
    opened("no scheme, no such file", u"example.org/a"_qs);
    const auto refused = [](const char *name, const QString &text) {
        QTest::newRow(name) << text << QStringList() << false;
    };
    refused("empty", QString());
    refused("blank", u"https://a b"_qs);
    refused("letters beyond ASCII", u"https://ä.example"_qs);
    refused("half an escape", u"https://h/%4"_qs);
    refused("path that leads nowhere", u"/no such/file"_qs);
}

void TestOpenLink::asksForTheRightThing()
{
    QFETCH(QString, text);
    QFETCH(bool, isValid);
    support::RecordingLinkOpener opener;
    QStringList lines;
    {
        StdoutCapture output;
        links::openLink(linkTo(text), opener);
        lines = output.lines();
    }
    QTEST(opener.addresses, "addresses");
    QCOMPARE(opener.files, QStringList());
    lines.removeIf([](const QString &line) { return line.startsWith(u"Failed to resolve alias: "); });
    QCOMPARE(lines, isValid ? QStringList() : invalid);
}

void TestOpenLink::handsAliasFilesOver()
{
    QTemporaryDir folder;
    const QByteArray alias = QFile::encodeName(folder.filePath(u"an alias"_qs));
    QVERIFY(platform::writeAliasFile("/usr", alias, nullptr));
    support::RecordingLinkOpener opener;
    links::openLink(linkTo(QFile::decodeName(alias)), opener);
    QCOMPARE(opener.files, QStringList{QFile::decodeName(alias)});
    QCOMPARE(opener.addresses, QStringList());
}

QTEST_GUILESS_MAIN(TestOpenLink)
#include "tst_openlink.moc"
