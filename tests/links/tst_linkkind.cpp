// SPDX-License-Identifier: MIT
#include "links/linkkind.h"
#include "platform/aliasfile.h"
#include "support/stdoutcapture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TestLinkKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindOfAddress();
    void kindOfPath();
    void look();
};

namespace {

TileMenuItem linkTo(const QString &text)
{
    TileMenuItem link;
    link.itemString = text;
    return link;
}

} // namespace

void TestLinkKind::kindOfAddress()
{
    // The text before the NUL names a folder; cut there it would have been taken for it.
    const QString nul = QStringLiteral("/tmp") + QChar(0) + QLatin1Char('x');
    const std::pair<QString, QString> rows[] = {{u"HTTPS://example.org"_qs, u"HTTPS"_qs},
                                                {u"mailto:a@example.org"_qs, u"mailto"_qs},
                                                {u"tel://"_qs, u"tel"_qs},
                                                {u"abc:def"_qs, u"abc"_qs},
                                                {u"https://a b"_qs, u"unknown"_qs},
                                                {u"example.org/x"_qs, u"unknown"_qs},
                                                {QString(), u"unknown"_qs},
                                                {u"/no/such file"_qs, u"unknown"_qs},
                                                {nul, u"unknown"_qs}};
    for (const auto &[address, kind] : rows) {
        auto output = std::make_unique<StdoutCapture>();
        const QString found = links::linkKind(linkTo(address));
        const QStringList lines = output->lines();
        output.reset();
        QVERIFY2(found == kind, qPrintable(address));
        QCOMPARE(lines.size(), kind == u"unknown" ? 1 : 0);
        for (const QString &line : lines)
            QVERIFY(line.startsWith(u"Failed to resolve alias: ") && line.contains(u"domain POSIX, code "));
    }
}

void TestLinkKind::kindOfPath()
{
    QTemporaryDir folder;
    QDir dir(folder.path());
    QVERIFY(dir.mkdir(u"Calculator.app"_qs) && dir.mkdir(u"My Folder"_qs));
    QVERIFY(QFile::link(u"My Folder"_qs, folder.filePath(u"link"_qs)));
    QVERIFY(QFile(folder.filePath(u"a.txt"_qs)).open(QIODevice::WriteOnly));
    const QString alias = folder.filePath(u"0A1B2C3D"_qs);
    const std::pair<QString, QString> rows[] = {{u"Calculator.app"_qs, u"appAlias"_qs},
                                                {u"My Folder"_qs, u"folderAlias"_qs},
                                                {u"a.txt"_qs, u"documentAlias"_qs},
                                                {u"link"_qs, u"folderAlias"_qs}};
    for (const auto &[name, kind] : rows) {
        const QString path = folder.filePath(name);
        QVERIFY(platform::writeAliasFile(QFile::encodeName(path), QFile::encodeName(alias), nullptr));
        for (const QString &direct : {path, alias}) {
            QVERIFY2(links::linkKind(linkTo(direct)) == kind, qPrintable(name));
            QVERIFY(links::isAlias(linkTo(direct)));
        }
    }
}

void TestLinkKind::look()
{
    const QColor blue = QColor::fromRgbF(0.0F, 0.64F, 0.88F);
    const QColor orange = QColor::fromRgbF(1.0F, 0.4F, 0.12F);
    const QString none = u"questionmark.square"_qs;
    // The two tables differ: "smb" and "wss" are known to only one of them.
    const std::tuple<QString, QString, QColor> rows[] = {{u"smb"_qs, u"server.rack"_qs, orange},
                                                         {u"wss"_qs, none, blue},
                                                         {u"ssh"_qs, u"apple.terminal"_qs, blue},
                                                         {u"Https"_qs, none, orange},
                                                         {QString(), none, orange}};
    for (const auto &[kind, symbol, tint] : rows) {
        QVERIFY2(links::symbolOfKind(kind) == symbol, qPrintable(kind));
        QVERIFY2(links::tintOfKind(kind) == tint, qPrintable(kind));
    }
}

QTEST_GUILESS_MAIN(TestLinkKind)
#include "tst_linkkind.moc"
