// SPDX-License-Identifier: MIT
#include "slowlinkdetector.h"

#include "platform/uri.h"

#include <QFile>
#include <QTest>

#include <random>

#include <libpsl.h>

class TestLinkDetector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labelledTexts();
    void topLevelDomainsAreThoseOfTheList();
    void findsWhatTheSlowDetectorFinds();
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
        if (const QByteArrayList found = addressesIn(text.toStdString()); found != expected)
            QFAIL((line + " gave " + found.join(' ')).constData());
    }
    QVERIFY(cases >= 400);
}

void TestLinkDetector::topLevelDomainsAreThoseOfTheList()
{
    const auto isKnown = [](const std::string &label) {
        constexpr int type = PSL_TYPE_ICANN | PSL_TYPE_NO_STAR_RULE;
        const auto isSuffix = [&label](const char *below) { // some have rules only for what lies below them
            return psl_is_public_suffix2(psl_builtin(), (below + label).c_str(), type) != 0;
        };
        return isSuffix("") || isSuffix("x.") || isSuffix("co.");
    };
    std::vector<std::string> labels = {"museum", "travel",   "photography",      "рф",
                                       "みんな", "xn--p1ai", "xn--q9jyb4c",      "invalid",
                                       "локал",  "xn--zz",   "vermögensberatung"};
    for (int i = 0; i < 27 * 26 * 26; ++i) { // all of two and three letters
        labels.push_back({char('a' + i / 26 % 26), char('a' + i % 26)});
        if (i >= 26 * 26)
            labels.back() += char('a' + i / 676 - 1);
    }
    for (const std::string &label : labels)
        QVERIFY2(links::isTopLevelDomain(label) == isKnown(label), label.c_str());
    QVERIFY(links::isTopLevelDomain("ORG"));
    for (const char *other : {"", "o", "org.", "a-long-label-that-is-longer-than-all-of-them-by-far"})
        QVERIFY(!links::isTopLevelDomain(other));
}

void TestLinkDetector::findsWhatTheSlowDetectorFinds()
{
    QByteArrayList bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.append(QByteArray(1, char(byte)));
    QList<std::pair<QByteArrayList, int>> texts = {
        {QByteArray(
             "http:// https:// http www. com org .com a b.c @ : / . - _ ? # & ; ( ) [ ] ' 1 127.0.0.1 "
             ":80 user: , | * ~ % %41 mailto: tel: +49 geo: sms: 12 maps: ?q= xmpp: ftp:// git+ a:// // = "
             "\" < > \\ javascript: data: &quot; &amp; &lt; [::1] [/ zip name this. this com. .uk co { } ! "
             "^ ` $ \xC3\xA9 \xE8\x8C\xB6 \xE2\x86\x92 \xE3\x80\x82 \xF0\x9F\x8D\xB5 \x80 \xE8 "
             "\xD1\x80\xD1\x84 W.ORG .Org x.example.org/path/to/a/longer/place.html?that=goes&beyond=64")
             .split(' '),
         40},
        {QByteArray(
             "http://a.org |www.b.de| |\n|. |, |) |(|x|me@c.co.uk|:|tel:112|e.g.|1.5|v1.2|f.py|'|\"|&lt;|"
             "/|?|#| ")
             .split('|'),
         60},
        {QByteArray(
             "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa . - @ .com : :// http:// / ; "
             "\xE8\x8C\xB6 \xE8\x8C\xB6\xE8\x8C\xB6\xE8\x8C\xB6\xE8\x8C\xB6")
             .split(' '),
         30},
        {bytes, 200}};
    for (const char *unit : {"(", "a.", "@", "a@", "http://", "www.", "://", "a.com/(", "a.com,", "'a.com",
                             "&a;", "x@y.de", "1.2"})
        texts.append({{unit}, 500});
    std::mt19937 random(42);
    for (const auto &[pieces, longest] : texts) {
        for (int round = 0; round < (pieces.size() == 1 ? 20 : 2000); ++round) {
            std::string text;
            for (int n = int(random() % unsigned(longest)); n >= 0; --n)
                text += pieces[qsizetype(random() % size_t(pieces.size()))].toStdString();
            const QByteArrayList addresses = addressesIn(text);
            if (links::findLinks(text) != SlowLinkDetector(text).find())
                QFAIL((addresses.join(' ') + " in " + QByteArray::fromStdString(text).toPercentEncoding())
                          .constData());
            for (const QByteArray &address : addresses) {
                const auto uri = platform::parseUriReference(QString::fromLatin1(address));
                QVERIFY2(uri && !uri->scheme.isEmpty(), address.constData());
                QCOMPARE(QByteArray::fromStdString(std::string(links::addressHost(address.toStdString()))),
                         uri->host.toLatin1());
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestLinkDetector)
#include "tst_linkdetector.moc"
