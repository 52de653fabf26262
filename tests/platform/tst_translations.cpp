// SPDX-License-Identifier: MIT
#include "platform/localized.h"
#include "platform/translations.h"

#include <QTest>
#include <QTranslator>

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followTheLocale()
    {
        // French is a language of the toolkit only.
        for (const auto &locale : {u"de_AT"_qs, u"en_GB"_qs, u"C"_qs, u"fr_FR"_qs}) {
            platform::installTranslations(QLocale(locale));
            const QStringList texts = {platform::localized("Settings"),
                                       QCoreApplication::translate("QPlatformTheme", "Cancel"),
                                       platform::localizedFileName("Tiles"), locale};
            const bool isGerman = locale == u"de_AT";
            QCOMPARE(texts,
                     (QStringList{isGerman ? u"Einstellungen"_qs : u"Settings"_qs,
                                  isGerman ? u"Abbrechen"_qs : u"Cancel"_qs, u"Tiles"_qs, locale}));
            qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>());
        }
    }
};

QTEST_GUILESS_MAIN(TestTranslations)

#include "tst_translations.moc"
