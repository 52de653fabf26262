// SPDX-License-Identifier: MIT
#include "links/linkdetector.h"
#include "platform/uri.h"

#include <QFile>
#include <QTest>

#include <random>

class TestLinkDetector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labelledTexts();
    void findsTheSameAnywhere();
};

static QByteArrayList addressesIn(const std::string &text)
{
    QByteArrayList addresses;
    for (const links::Link &link : links::findLinks(text))
        addresses.append(QByteArray::fromStdString(links::absoluteAddress(text, link)));
    return addresses;
}

void TestLinkDetector::labelledTexts()
{
    QFile file(QStringLiteral(PW_TEST_DATA "/links/labelled.txt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    int cases = 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.isEmpty() || line.startsWith("# "))
            continue;
        QByteArrayList expected = line.split('\t');
        const QByteArray text = expected.takeFirst()
                                    .replace("\\\\", "\1")
                                    .replace("\\n", "\n")
                                    .replace("\\t", "\t")
                                    .replace('\\', "")
                                    .replace('\1', '\\');
        ++cases;
        for (const QByteArray &around :
             {QByteArray(), QByteArray(99, ' ')}) { // for one byte and for many at once
            const QByteArrayList found = addressesIn((around + text + around).toStdString());
            QVERIFY2(found == expected, (line + " gave " + found.join(' ')).constData());
        }
    }
    QVERIFY(cases >= 400);
}

/// Vectors, blocks and a short cut for plain addresses, which the beginning of a text does not take, must not
/// show: blanks around a text move its links and change none.
void TestLinkDetector::findsTheSameAnywhere()
{
    const QByteArrayList pieces =
        QByteArray(
            "http:// https:// www. com org .com a b.c @ : / . - _ ? # & ; ( ) [ ] ' 1 127.0.0.1 :80 , "
            "* ~ %41 mailto: tel: +49 geo: maps: ?q= ftp:// git+ // = \" < > &quot; &amp; &apos; -. [::1] "
            "name "
            "this. .uk { } ! | ^ \n \xC3\xA9 \xE8\x8C\xB6 \xE3\x80\x82 \x80 \xE8 \xD1\x80\xD1\x84 .Org "
            "http://a.org me@c.co.uk x.example.org/path/to/a/longer/place.html?that=goes&beyond=64 "
            "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"
            "aaa")
            .split(' ');
    std::mt19937 random(42);
    for (int round = 0; round < 8000; ++round) {
        std::string text = round % 2 == 0 ? "http://" : "";
        for (unsigned n = random() % 20; n > 0; --n)
            text += round % 8 == 0 ? std::string(1, char(random()))
                                   : pieces[qsizetype(random() % size_t(pieces.size()))].toStdString();
        const std::size_t before = random() % 100;
        const std::string moved = std::string(before, ' ') + text + std::string(random() % 100, ' ');
        std::vector<links::Link> expected = links::findLinks(text);
        for (links::Link &link : expected)
            link.begin += before;
        QVERIFY2(links::findLinks(moved) == expected,
                 QByteArray::fromStdString(moved).toPercentEncoding().constData());
        for (const QByteArray &address : addressesIn(text)) {
            const auto uri = platform::parseUriReference(QString::fromLatin1(address));
            QVERIFY2(uri && !uri->scheme.isEmpty(), address.constData());
            QCOMPARE(QString::fromStdString(std::string(links::addressHost(address.toStdString()))),
                     uri->host);
        }
    }
}

QTEST_GUILESS_MAIN(TestLinkDetector)
#include "tst_linkdetector.moc"
