// SPDX-License-Identifier: MIT
#include "coloursof.h"

#include "model/config.h"
#include "support/files.h"
#include "support/stdoutcapture.h"
#include "themes/iconstore.h"
#include "themes/imagecatalog.h"
#include "themes/symbolimage.h"
#include "themes/themestore.h"

#include <QGuiApplication>
#include <QIcon>
#include <QTemporaryDir>
#include <QTest>

using namespace themes;

namespace {

QByteArray svg(int width, const QByteArray &colour = "red")
{
    return "<svg xmlns='http://www.w3.org/2000/svg' height='9' width='" + QByteArray::number(width)
        + "'><rect width='44' height='9' fill='" + colour + "'/></svg>";
}

} // namespace

class ThemeStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_documents = std::make_unique<QTemporaryDir>();
        m_config = std::make_unique<Config>(m_documents->path(), m_documents->path());
        m_config->setCurrentTheme(u"mine"_qs);
    }

    void everyThemeIsInstalled()
    {
        QCOMPARE(installation(), QStringList());
        QCOMPARE(support::namesIn(themes()), m_config->availableThemes());
        for (const QString &theme : m_config->availableThemes()) {
            m_config->setCurrentTheme(theme);
            for (const QString &name : builtInIconNames(theme))
                QVERIFY2(iconImage(*m_config, name, 2) == drawBuiltInImage(theme + u'-' + name, 2),
                         qPrintable(theme + name));
            QCOMPARE(tileImage(*m_config, 2), drawBuiltInImage(theme + u"-tile"_qs, 2));
        }
    }

    void installationGoesOnAfterFailuresButNotAfterAnUnknownTheme()
    {
        // A name too long for a folder is reported, and a theme listed twice is written once.
        m_config->setAvailableThemes({QString(300, u'x'), u"1988"_qs, u"1988"_qs, u"mine"_qs, u"2024"_qs});
        const QStringList reports = installation();
        QVERIFY2(reports.size() == 2 && reports.last() == u"Image not found.",
                 qPrintable(reports.join(u' ')));
        QCOMPARE(support::namesIn(themes()), QStringList({u"1988"_qs, u"mine"_qs}));
    }

    void elementsFallBack()
    {
        const std::pair<QImage (*)(const Config &, qreal), QString> elements[] = {
            {&tabLeadingImage, u"tab-leading"_qs},
            {&tabLeadingVerticalImage, u"tab-leading-vertical"_qs},
            {&tabTrailingImage, u"tab-trailing"_qs},
            {&tabTrailingVerticalImage, u"tab-trailing-vertical"_qs},
            {&tileImage, u"tile"_qs},
            {&tileVerticalImage, u"tile-vertical"_qs},
            {&closeImage, u"close"_qs},
            {&minimizeImage, u"minimize"_qs},
            {&calendarImage, u"calendar"_qs},
            {&homeImage, u"home"_qs}};
        for (const auto &[image, element] : elements) {
            const QImage fallback = element == u"calendar" ? fallbackSymbol(*m_config, element, 2)
                : element == u"home"                       ? fallbackSymbol(*m_config, u"switch.2"_qs, 2)
                                                           : builtInImage(u"2024-"_qs + element, 2);
            QVERIFY2(image(*m_config, 2) == fallback, qPrintable(element));
            const QString path = u"mine/Chrome/%1.png"_qs.arg(element);
            put(path, svg(7));
            QVERIFY2(image(*m_config, 1).size() == QSize(7, 9), qPrintable(element));
            put(path, "no picture");
            QVERIFY2(image(*m_config, 2) == fallback, qPrintable(element));
        }
    }

    // The question mark was grey on every tile, and hardly to be seen on a grey one.
    void fallbackSymbolsShowOnTheTile()
    {
        for (const int lightness : {0x10, 0x70, 0xb0, 0xf0}) {
            const QColor tile(lightness, lightness, lightness);
            put(u"mine/Chrome/tile.png"_qs, svg(44, tile.name().toLatin1()));
            int strongest = 0;
            for (const QRgb colour : coloursOf(iconImage(*m_config, u"gone"_qs, 2)))
                strongest = qMax(strongest, qAlpha(colour) < 255 ? 0 : qAbs(qGray(colour) - lightness));
            QVERIFY2(strongest > 100, qPrintable(tile.name()));
        }
    }

    void iconNamesAreThoseOfPngFiles()
    {
        QStringList names(u"not asked yet"_qs);
        const QStringList lines = reportsOf([&] { names = currentThemeIconNames(*m_config); });
        QCOMPARE(names, QStringList());
        QVERIFY(lines.size() == 1 && lines.first().contains(file(u"mine/Icons"_qs)));

        for (const char16_t *name : {u"a.png", u"B.png", u"c.PNG", u"notes.txt", u".png", u"d.png.",
                                     u".e.png", u"f.g.png", u"ƒ.png", u"h .png"})
            put(u"mine/Icons/"_qs + QString::fromUtf16(name));
        QVERIFY(QFile::link(u"nowhere"_qs, file(u"mine/Icons/broken.png"_qs)));
        names = currentThemeIconNames(*m_config);
        names.sort();
        QCOMPARE(names.join(u'|'), u".e|B|a|broken|f.g|h |ƒ"_qs);

        put(u"mine/Chrome/default.png"_qs, svg(1));
        put(u"mine/Icons/default.png"_qs, svg(2));
        put(u"mine/Icons/Default.png"_qs, svg(3));
        QCOMPARE(iconImage(*m_config, u"default"_qs, 1).width(), 1);
        QCOMPARE(iconImage(*m_config, u"Default"_qs, 1).width(), 3);
        for (const int width : {4, 5}) { // replaced between two redraws
            const OneLook look;
            put(u"mine/Icons/Default.png"_qs, svg(width));
            QCOMPARE(iconImage(*m_config, u"Default"_qs, 1).width(), width);
        }
    }

    void unknownApplicationIconChangesNothing()
    {
        const auto apply = [this](const QString &name) {
            m_config->setAppIcon(name);
            return reportsOf([this] { applyAppIcon(*m_config); });
        };
        QCOMPARE(apply(u"2000"_qs), QStringList());
        const QImage set = QGuiApplication::windowIcon().pixmap(64).toImage();
        QCOMPARE(set.convertToFormat(QImage::Format_ARGB32_Premultiplied),
                 builtInImage(u"2000-preview"_qs, 1));
        for (const QString &name : {u"2001"_qs, u""_qs, u"../appicons/Default"_qs, u"Default.png"_qs}) {
            QCOMPARE(apply(name), QStringList(u"Failed to load icon: "_qs + name));
            QCOMPARE(QGuiApplication::windowIcon().pixmap(64).toImage(), set);
        }
    }

private:
    QString themes() const { return m_documents->filePath(u"pondWicket ƒ/Themes"_qs); }
    QString file(const QString &name) const { return themes() + u'/' + name; }

    void put(const QString &name, const QByteArray &bytes = "x") const { support::make(file(name), bytes); }

    static QStringList reportsOf(const std::function<void()> &deed)
    {
        StdoutCapture output;
        deed();
        return output.lines();
    }
    QStringList installation() const
    {
        return reportsOf([this] { installBuiltInThemes(*m_config); });
    }

    std::unique_ptr<QTemporaryDir> m_documents;
    std::unique_ptr<Config> m_config;
};

QTEST_MAIN(ThemeStoreTest)
#include "tst_themestore.moc"
