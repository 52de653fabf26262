// SPDX-License-Identifier: MIT
#include "slowlinkdetector.h"

#include "links/linkdetector.h"
#include "links/topleveldomains.h"
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
    void findsWhatTheSlowDetectorFinds_data();
    void findsWhatTheSlowDetectorFinds();
    void hostsOfAddresses();
};

static std::string unescaped(const QByteArray &text)
{
    std::string out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c != '\\' || i + 1 == text.size()) {
            out += c;
            continue;
        }
        const char escape = text[++i];
        out += escape == 'n' ? '\n' : escape == 't' ? '\t' : escape;
    }
    return out;
}

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
    int cases = 0, wanted = 0, found = 0, right = 0;
    QByteArray group;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.isEmpty() || line.startsWith("# ")) {
            group = line;
            continue;
        }
        QByteArrayList expected = line.split('\t');
        const std::string text = unescaped(expected.takeFirst());
        const QByteArrayList addresses = addressesIn(text);
        ++cases;
        wanted += int(expected.size());
        found += int(addresses.size());
        if (addresses != expected)
            qWarning() << group << line << "gave" << addresses;
        for (const QByteArray &address : addresses)
            right += expected.removeOne(address);
    }
    QVERIFY(cases >= 400);
    qInfo("%d texts, precision %.4f, recall %.4f", cases, double(right) / found, double(right) / wanted);
    QVERIFY(double(right) / found >= 0.995);
    QVERIFY(double(right) / wanted >= 0.995);
}

void TestLinkDetector::topLevelDomainsAreThoseOfTheList()
{
    const psl_ctx_t *list = psl_builtin();
    const auto isKnown = [list](const std::string &label) {
        constexpr int type = PSL_TYPE_ICANN | PSL_TYPE_NO_STAR_RULE;
        for (const char *below : {"", "x.", "co."}) { // some have rules only for what lies below them
            if (psl_is_public_suffix2(list, (below + label).c_str(), type))
                return true;
        }
        return false;
    };
    std::vector<std::string> labels = {"museum", "travel",   "photography",      "рф",
                                       "みんな", "xn--p1ai", "xn--q9jyb4c",      "invalid",
                                       "локал",  "xn--zz",   "vermögensberatung"};
    for (char a = 'a'; a <= 'z'; ++a) {
        for (char b = 'a'; b <= 'z'; ++b) {
            labels.push_back({a, b});
            for (char c = 'a'; c <= 'z'; ++c)
                labels.push_back({a, b, c});
        }
    }
    for (const std::string &label : labels)
        QVERIFY2(links::isTopLevelDomain(label) == isKnown(label), label.c_str());
    QVERIFY(links::isTopLevelDomain("ORG"));
    for (const char *other : {"", "o", "org.", "a-long-label-that-is-longer-than-all-of-them-by-far"})
        QVERIFY(!links::isTopLevelDomain(other));
}

void TestLinkDetector::findsWhatTheSlowDetectorFinds_data()
{
    QTest::addColumn<QList<QByteArray>>("pieces");
    QTest::addColumn<int>("longest");
    QTest::newRow("addresses")
        << QByteArray("http:// https:// http www. com org .com a b.c @ : / . - _ ? # & ; ( ) [ ] ' "
                      "1 127.0.0.1 :80 user: , | * ~ % %41 mailto: tel: +49 geo: sms: 12 maps: ?q= "
                      "xmpp: ftp:// git+ a:// // = \" < > \\ javascript: data: &quot; &amp; &lt; [::1] "
                      "[/ zip name this. this com. .uk co { } ! ^ ` $ \xC3\xA9 \xE8\x8C\xB6 "
                      "\xE2\x86\x92 \xE3\x80\x82 \xF0\x9F\x8D\xB5 \x80 \xE8 \xD1\x80\xD1\x84 W.ORG .Org "
                      "x.example.org/path/to/a/longer/place.html?that=goes&beyond=64")
               .split(' ')
        << 40;
    QTest::newRow("with blanks")
        << QByteArray("http://a.org |www.b.de| |\n|. |, |) |(|x|me@c.co.uk|:|tel:112|e.g.|1.5|v1.2|"
                      "f.py|'|\"|&lt;|/|?|#| ")
               .split('|')
        << 60;
    QTest::newRow("long")
        << QByteArray("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa . - @ .com : :// "
                      "http:// / ; \xE8\x8C\xB6 \xE8\x8C\xB6\xE8\x8C\xB6\xE8\x8C\xB6\xE8\x8C\xB6")
               .split(' ')
        << 30;
    QList<QByteArray> bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.append(QByteArray(1, char(byte)));
    QTest::newRow("bytes") << bytes << 200;
    for (const char *unit :
         {"(", "a.", "@", "a@", "http://", "www.", "://", "a.com/(", "a.com,", "'a.com", "&a;", "x@y.de"})
        QTest::addRow("repeated %s", unit) << QList<QByteArray>{unit} << 500;
}

void TestLinkDetector::findsWhatTheSlowDetectorFinds()
{
    QFETCH(QList<QByteArray>, pieces);
    QFETCH(int, longest);
    std::mt19937 random(42);
    for (int round = 0; round < (pieces.size() == 1 ? 20 : 2000); ++round) {
        std::string text;
        for (int n = int(random() % unsigned(longest)); n >= 0; --n)
            text += pieces[qsizetype(random() % size_t(pieces.size()))].toStdString();
        const std::vector<links::Link> found = links::findLinks(text);
        const std::vector<links::Link> expected = SlowLinkDetector(text).find();
        if (found != expected) {
            for (const auto &[name, list] : {std::pair("found", found), std::pair("expected", expected)}) {
                for (const links::Link &link : list)
                    qWarning() << name << QByteArray::fromStdString(text.substr(link.begin, link.length));
            }
            QFAIL(QByteArray::fromStdString(text).toPercentEncoding(" /:?#[]@!$&'()*+,;=|").constData());
        }
        for (const QByteArray &address : addressesIn(text)) {
            const std::optional<platform::Uri> uri =
                platform::parseUriReference(QString::fromLatin1(address));
            QVERIFY2(uri && !uri->scheme.isEmpty(), address.constData());
            const std::string_view host = links::addressHost({address.data(), size_t(address.size())});
            QCOMPARE(QString::fromLatin1(host.data(), qsizetype(host.size())), uri->host);
        }
    }
}

void TestLinkDetector::hostsOfAddresses()
{
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"http://a.org:80/x", "a.org"}, {"http://me:pw@a.org", "a.org"}, {"http://[::1]:80/", "[::1]"},
        {"mailto:me@a.org", ""},        {"file:///x@y:1", ""},           {"http://a.org/@b:1", "a.org"}};
    for (const auto &[address, host] : rows)
        QVERIFY2(links::addressHost(address) == host, address.data());
}

QTEST_GUILESS_MAIN(TestLinkDetector)
#include "tst_linkdetector.moc"
