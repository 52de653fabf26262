// SPDX-License-Identifier: MIT
#include "platform/localized.h"
#include "platform/translations.h"

#include <QTest>
#include <QTranslator>

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followTheLocale_data();
    void followTheLocale();
};

void TestTranslations::followTheLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("settings");
    QTest::addColumn<QString>("cancel"); // one of the toolkit's own texts

    QTest::newRow("translated") << u"de_AT"_qs << u"Einstellungen"_qs << u"Abbrechen"_qs;
    QTest::newRow("English") << u"en_GB"_qs << u"Settings"_qs << u"Cancel"_qs;
    QTest::newRow("none") << u"C"_qs << u"Settings"_qs << u"Cancel"_qs;
    QTest::newRow("only the toolkit is translated") << u"fr_FR"_qs << u"Settings"_qs << u"Cancel"_qs;
}

void TestTranslations::followTheLocale()
{
    QFETCH(QString, locale);
    platform::installTranslations(QLocale(locale));
    QTEST(platform::localized("Settings"), "settings");
    QTEST(QCoreApplication::translate("QPlatformTheme", "Cancel"), "cancel");
    QCOMPARE(platform::localizedFileName("Tiles"), u"Tiles"_qs);
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>());
}

QTEST_GUILESS_MAIN(TestTranslations)

#include "tst_translations.moc"
