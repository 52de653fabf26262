// SPDX-License-Identifier: MIT
#include "platform/uri.h"

#include <QTest>

class TestUri : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parts_data();
    void parts();
    void refused_data();
    void refused();
    void filePathsSurviveARoundTrip_data();
    void filePathsSurviveARoundTrip();
};

void TestUri::parts_data()
{
    QTest::addColumn<QString>("joined");
    // Parts that are absent show as "-", empty ones as nothing.
    const auto row = [](const char *text, const char *joined) {
        QTest::newRow(text) << QString::fromUtf8(joined);
    };
    // scheme, user, host, port, path, query, fragment
    row("https://user:pw@www.example.org:8080/a/b?c=d#e", "https|user:pw|www.example.org|8080|/a/b|c=d|e");
    row("maps://?q=pizza",
        "maps||||"
        "|q=pizza|-");
    row("sms://", "sms|||||-|-");
    row("sms:", "sms|-|-|-||-|-");
    row("HTTP://EXAMPLE.org", "HTTP||EXAMPLE.org|||-|-");
    row("mailto:a@b.c", "mailto|-|-|-|a@b.c|-|-");
    row("x-a+b.c:/p", "x-a+b.c|-|-|-|/p|-|-");
    row("file:///a%20b/%C6%92", "file||||/a%20b/%C6%92|-|-");
    row("http://[::1]:80/", "http||[::1]|80|/|-|-");
    row("http://[1:2:3:4:5:6:7:8]", "http||[1:2:3:4:5:6:7:8]|||-|-");
    row("http://[1:2:3:4:5:6:1.2.3.4]", "http||[1:2:3:4:5:6:1.2.3.4]|||-|-");
    row("http://[::ffff:255.0.10.199]", "http||[::ffff:255.0.10.199]|||-|-");
    row("http://[1:2:3:4:5:6:7::]", "http||[1:2:3:4:5:6:7::]|||-|-");
    row("http://[v1F.a:b]", "http||[v1F.a:b]|||-|-");
    row("http://a:/", "http||a||/|-|-");
    row("http://a%2Fb/", "http||a%2Fb||/|-|-");
    row("http://256.1.1.1/", "http||256.1.1.1||/|-|-"); // a name like any other
    row("a:b:c", "a|-|-|-|b:c|-|-");
    row("a://b//c", "a||b||//c|-|-");
    row("/home/user/file", "-|-|-|-|/home/user/file|-|-");
    row("//host/p", "-||host||/p|-|-");
    row("a/b:c", "-|-|-|-|a/b:c|-|-");
    row("./a:b", "-|-|-|-|./a:b|-|-");
    row("?a:b/?", "-|-|-|-||a:b/?|-");
    row("#a?/:", "-|-|-|-||-|a?/:");
    row("a?#", "-|-|-|-|a||");
    row("!$&'()*+,;=@_~-.", "-|-|-|-|!$&'()*+,;=@_~-.|-|-");
}

void TestUri::parts()
{
    QFETCH(QString, joined);
    const auto uri = platform::parseUriReference(QString::fromUtf8(QTest::currentDataTag()));
    QVERIFY(uri);
    const QString none = QStringLiteral("-");
    QCOMPARE(
        (QStringList{uri->scheme.isEmpty() ? none : uri->scheme, uri->hasAuthority ? uri->userInfo : none,
                     uri->hasAuthority ? uri->host : none, uri->hasAuthority ? uri->port : none, uri->path,
                     uri->hasQuery ? uri->query : none, uri->hasFragment ? uri->fragment : none})
            .join(u'|'),
        joined);
}

void TestUri::refused_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"",
                             " ",
                             "a b",
                             "http://a b/",
                             " http://a",
                             "http://a\n",
                             "1a:b",
                             "a:b:c/ d",
                             ":a",
                             "a_b:c",
                             "+a:b",
                             "http://é.org/",
                             "http://a/ƒ",
                             "%",
                             "%4",
                             "%4g",
                             "a%zz",
                             "http://a/%2",
                             "http://a:b/",
                             "http://a:8o/",
                             "http://a@b@c/",
                             "http://a:1:2/",
                             "http://[::1",
                             "http://::1]/",
                             "http://[]/",
                             "http://[:::]/",
                             "http://[::1::]/",
                             "http://[1:2:3:4:5:6:7]/",
                             "http://[1:2:3:4:5:6:7:8:9]/",
                             "http://[1:2:3:4:5:6:7::8]/",
                             "http://[12345::]/",
                             "http://[::1.2.3]/",
                             "http://[::1.2.3.256]/",
                             "http://[::01.2.3.4]/",
                             "http://[1.2.3.4::]/",
                             "http://[::1%25eth0]/",
                             "http://[v.a]/",
                             "http://[v1.]/",
                             "http://[vg.a]/",
                             "http://[::1]a/",
                             "http://x[::1]/",
                             "http://[1:]/",
                             "http://[:1]/",
                             "a[b]",
                             "a\\b",
                             "a\"b",
                             "<a>",
                             "a^b",
                             "a`b",
                             "{a}",
                             "a|b",
                             "a#b#c",
                             "a\x7f"})
        QTest::newRow(text) << QString::fromUtf8(text);
    QTest::newRow("NUL") << QString(QChar(0));
    QTest::newRow("full-width letter") << QStringLiteral("\uFF41:b");
    QTest::newRow("Arabic digit in the port") << QStringLiteral("http://a:\u0661/");
}

void TestUri::refused()
{
    QFETCH(QString, text);
    QVERIFY(!platform::parseUriReference(text));
}

void TestUri::filePathsSurviveARoundTrip_data()
{
    QTest::addColumn<QString>("uri");
    QTest::newRow("/home/user/pondWicket ƒ/Tiles")
        << QStringLiteral("file:///home/user/pondWicket%20%C6%92/Tiles");
    QTest::newRow("/100%/a?b#c;d") << QStringLiteral("file:///100%25/a%3Fb%23c%3Bd");
    QTest::newRow("/a&b=c,d+e@f:g!$'()*~_.-[x]\"\\")
        << QStringLiteral("file:///a&b=c,d+e@f:g!$'()*~_.-%5Bx%5D%22%5C");
}

void TestUri::filePathsSurviveARoundTrip()
{
    QFETCH(QString, uri);
    const QString path = QString::fromUtf8(QTest::currentDataTag());
    QCOMPARE(platform::fileUri(path), uri);
    QCOMPARE(platform::pathOfFileUri(uri), path);
    QVERIFY(platform::parseUriReference(uri));
}

QTEST_APPLESS_MAIN(TestUri)
#include "tst_uri.moc"
