// SPDX-License-Identifier: MIT
#include "platform/uri.h"

#include <QTest>

class TestUri : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parts()
    {
        // An address, then its scheme, user, host, port, path, query, fragment; "-" where absent
        const QString table = uR"(
            https://user:pw@www.example.org:8080/a/b?c=d#e   https|user:pw|www.example.org|8080|/a/b|c=d|e
            maps://?q=pizza            maps|||||q=pizza|-    sms:          sms|-|-|-||-|-
            HTTP://EXAMPLE.org         HTTP||EXAMPLE.org|||-|-             x-a+b.c:/p    x-a+b.c|-|-|-|/p|-|-
            file:///a%20b/%C6%92       file||||/a%20b/%C6%92|-|-           a:b:c         a|-|-|-|b:c|-|-
            http://[::1]:80/           http||[::1]|80|/|-|-                http://a:/    http||a||/|-|-
            http://[1:2:3:4:5:6:1.2.3.4]      http||[1:2:3:4:5:6:1.2.3.4]|||-|-
            http://[::ffff:255.0.10.199]      http||[::ffff:255.0.10.199]|||-|-
            http://[1:2:3:4:5:6:7::]   http||[1:2:3:4:5:6:7::]|||-|-       //host/p      -||host||/p|-|-
            http://[v1F.a:b]           http||[v1F.a:b]|||-|-               a/b:c         -|-|-|-|a/b:c|-|-
            http://256.1.1.1/          http||256.1.1.1||/|-|-              ?a:b/?        -|-|-|-||a:b/?|-
            !$&'()*+,;=@_~-.           -|-|-|-|!$&'()*+,;=@_~-.|-|-        a?#           -|-|-|-|a||)"_qs;
        const QStringList words = table.simplified().split(u' ');
        for (qsizetype i = 0; i < words.size(); i += 2) {
            const auto uri = platform::parseUriReference(words.at(i));
            QVERIFY2(uri, qPrintable(words.at(i)));
            const auto part = [](bool isThere, const QString &text) { return isThere ? text : u"-"_qs; };
            const bool hasHost = uri->hasAuthority;
            const QStringList found = {part(!uri->scheme.isEmpty(), uri->scheme),
                                       part(hasHost, uri->userInfo),
                                       part(hasHost, uri->host),
                                       part(hasHost, uri->port),
                                       uri->path,
                                       part(uri->hasQuery, uri->query),
                                       part(uri->hasFragment, uri->fragment)};
            QCOMPARE(found.join(u'|'), words.at(i + 1));
        }
    }

    void refused()
    {
        QStringList texts =
            u"1a:b :a a_b:c +a:b http://é.org/ http://a/ƒ % %4 %4g a%zz http://a/%2 http://a:b/ http://a:8o/ "
            u"http://a@b@c/ http://a:1:2/ http://[::1 http://::1]/ http://[]/ http://[:::]/ http://[::1::]/ "
            u"http://[1:2:3:4:5:6:7]/ http://[1:2:3:4:5:6:7:8:9]/ http://[1:2:3:4:5:6:7::8]/ "
            u"http://[12345::]/ http://[::1.2.3]/ http://[::1.2.3.256]/ http://[::01.2.3.4]/ "
            u"http://[1.2.3.4::]/ http://[::1%25eth0]/ http://[v.a]/ http://[v1.]/ http://[vg.a]/ "
            u"http://[::1]a/ http://x[::1]/ http://[1:]/ http://[:1]/ a[b] a\\b a\"b <a> a^b a`b {a} a|b "
            u"a#b#c a\x7f \uFF41:b http://a:\u0661/"_qs.split(u' ');
        texts << u""_qs << u" "_qs << u"a:b:c/ d"_qs << u"http://a b/"_qs << u" http://a"_qs
              << u"http://a\n"_qs << QString(QChar(0));
        for (const QString &text : texts)
            QVERIFY2(!platform::parseUriReference(text), qPrintable(text));
    }

    void filePathsSurviveARoundTrip()
    {
        const std::pair<const char *, const char *> rows[] = {
            {"/pondWicket ƒ/Tiles", "file:///pondWicket%20%C6%92/Tiles"},
            {"/100%/a?b#c;d", "file:///100%25/a%3Fb%23c%3Bd"},
            {"/a&b=c,d+e@f:g!$'()*~_.-[x]\"\\", "file:///a&b=c,d+e@f:g!$'()*~_.-%5Bx%5D%22%5C"}};
        for (const auto &[name, address] : rows) {
            const QString path = QString::fromUtf8(name), uri = QString::fromUtf8(address);
            QCOMPARE(platform::fileUri(path), uri);
            QCOMPARE(platform::pathOfFileUri(uri), path);
            QVERIFY(platform::parseUriReference(uri));
        }
    }
};

QTEST_APPLESS_MAIN(TestUri)
#include "tst_uri.moc"
