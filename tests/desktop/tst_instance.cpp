// SPDX-License-Identifier: MIT
#include "platform/aliasfile.h"
#include "support/files.h"
#include "support/program.h"

#include <QFile>
#include <QTest>

using namespace support;

class TestInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void laterStartsLeaveItToTheFirst()
    {
        Desktop desktop;
        QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
        desktop.recordOpened({u"text/plain"_qs});
        const QString document = make(desktop.home() + u"/a text.txt"_qs, "text");
        const QString alias = desktop.home() + u"/an alias"_qs;
        QVERIFY(platform::writeAliasFile(QFile::encodeName(document), QFile::encodeName(alias), nullptr));

        Program first(desktop, QStringLiteral(PW_PROGRAM));
        QVERIFY2(!first.waitForWindow().isNull(), qPrintable(first.errors()));
        const auto startAgain = [&](const QStringList &arguments) {
            Program later(desktop, QStringLiteral(PW_PROGRAM), arguments);
            QCOMPARE(later.waitForExit(), 0);
            QCOMPARE(later.lines(), QStringList());
        };
        startAgain({});
        // A file that is no alias might be one that the desktop opens with us, for ever.
        startAgain({document});
        startAgain({alias});
        QTRY_COMPARE(desktop.opened().size(), 1);
        QVERIFY(desktop.opened().first().endsWith(u"/a%20text.txt"_qs)
                || desktop.opened().first().endsWith(u"/a text.txt"_qs));
        startAgain({u"--quit"_qs});
        QCOMPARE(first.waitForExit(), 0);
    }
};

QTEST_GUILESS_MAIN(TestInstance)
#include "tst_instance.moc"
