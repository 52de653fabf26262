// SPDX-License-Identifier: MIT
#include "model/config.h"
#include "platform/files.h"
#include "support/stdoutcapture.h"
#include "themes/iconstore.h"
#include "themes/imagecatalog.h"
#include "themes/imagefile.h"
#include "themes/symbolimage.h"
#include "themes/themestore.h"

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QTemporaryDir>
#include <QTest>

using namespace themes;

class ThemeStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void installationWritesEveryTheme();
    void installedPicturesAreTheDrawings_data();
    void installedPicturesAreTheDrawings();
    void nothingIsInstalledBesideWhatStands();
    void unknownThemeEndsTheInstallation();
    void installationGoesOnAfterFailures();
    void elementsFallBack_data();
    void elementsFallBack();
    void elementsComeFromTheCurrentTheme();
    void fallbackSymbolsShowOnTheTile();
    void iconNamesAreThoseOfPngFiles();
    void iconsOfAMissingThemeAreReported();
    void iconImages();
    void applicationIcon();

private:
    QString themes() const { return m_documents->filePath(QStringLiteral("pondWicket ƒ/Themes")); }
    QString file(const QString &name) const { return themes() + QLatin1Char('/') + name; }
    void put(const QString &name, const QByteArray &bytes = "x")
    {
        QVERIFY(QDir().mkpath(QFileInfo(file(name)).path()));
        QVERIFY(platform::writeInPlace(file(name), bytes, nullptr));
    }

    std::unique_ptr<QTemporaryDir> m_documents;
    std::unique_ptr<Config> m_config;
};

namespace {

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

QStringList reportsOf(const std::function<void()> &deed)
{
    StdoutCapture output;
    deed();
    return output.lines();
}

} // namespace

void ThemeStoreTest::init()
{
    m_documents = std::make_unique<QTemporaryDir>();
    m_config = std::make_unique<Config>(m_documents->path(), m_documents->path());
}

void ThemeStoreTest::installationWritesEveryTheme()
{
    QCOMPARE(reportsOf([this] { installBuiltInThemes(*m_config); }), QStringList());
    const QHash<QString, int> iconCounts = {{QStringLiteral("1984"), 6}, {QStringLiteral("1988"), 5},
                                            {QStringLiteral("1995"), 9}, {QStringLiteral("1996"), 22},
                                            {QStringLiteral("2000"), 9}, {QStringLiteral("2010"), 15},
                                            {QStringLiteral("2024"), 24}};
    QCOMPARE(filesIn(themes()).size(), iconCounts.size());
    for (const QString &theme : filesIn(themes())) {
        QCOMPARE(filesIn(file(theme)), QStringList({QStringLiteral("Chrome"), QStringLiteral("Icons")}));
        QCOMPARE(filesIn(chromeFolderURL(*m_config, theme)).size(), 11);
        QCOMPARE(filesIn(iconsFolderURL(*m_config, theme)).size(), iconCounts.value(theme));
    }
    const auto bytes = platform::readWholeFile(file(QStringLiteral("2010/Icons/folder-violet.png")), nullptr);
    QVERIFY(bytes && bytes->startsWith(QByteArrayView("II*\0", 4)));
}

void ThemeStoreTest::installedPicturesAreTheDrawings_data()
{
    QTest::addColumn<QString>("theme");
    for (const QString &theme : SettingsData().availableThemes)
        QTest::addRow("%s", qPrintable(theme)) << theme;
}

void ThemeStoreTest::installedPicturesAreTheDrawings()
{
    QFETCH(QString, theme);
    m_config->setAvailableThemes({theme});
    m_config->setCurrentTheme(theme);
    installBuiltInThemes(*m_config);
    for (const QString &name : builtInIconNames(theme))
        QCOMPARE(iconImage(*m_config, name, 2), drawBuiltInImage(theme + u'-' + name, 2));
    QCOMPARE(tileImage(*m_config, 2), drawBuiltInImage(theme + QStringLiteral("-tile"), 2));
    QCOMPARE(homeImage(*m_config, 2), drawBuiltInImage(theme + QStringLiteral("-home"), 2));
    QCOMPARE(tabLeadingImage(*m_config, 1).deviceIndependentSize(), QSizeF(14, 44));
    QCOMPARE(tabLeadingImage(*m_config, 1).size(), QSize(14, 44));
}

void ThemeStoreTest::nothingIsInstalledBesideWhatStands()
{
    QVERIFY(QDir().mkpath(themes()));
    QCOMPARE(reportsOf([this] { installBuiltInThemes(*m_config); }), QStringList());
    QCOMPARE(filesIn(themes()), QStringList());
    // A theme listed twice is written once.
    QVERIFY(QDir().rmdir(themes()));
    m_config->setAvailableThemes({QStringLiteral("1988"), QStringLiteral("1988")});
    QCOMPARE(reportsOf([this] { installBuiltInThemes(*m_config); }), QStringList());
    QCOMPARE(filesIn(themes()), QStringList(QStringLiteral("1988")));
}

void ThemeStoreTest::unknownThemeEndsTheInstallation()
{
    m_config->setAvailableThemes({QStringLiteral("1988"), QStringLiteral("mine"), QStringLiteral("2024")});
    QCOMPARE(reportsOf([this] { installBuiltInThemes(*m_config); }),
             QStringList(QStringLiteral("Image not found.")));
    QCOMPARE(filesIn(themes()), QStringList({QStringLiteral("1988"), QStringLiteral("mine")}));
    QCOMPARE(filesIn(file(QStringLiteral("mine"))), QStringList(QStringLiteral("Chrome")));
    QCOMPARE(filesIn(file(QStringLiteral("mine/Chrome"))), QStringList());
}

void ThemeStoreTest::installationGoesOnAfterFailures()
{
    // A dangling link does not exist, and no folder can be made in its place.
    const QString trap = themes();
    QVERIFY(QDir().mkpath(QFileInfo(trap).path()));
    QVERIFY(QFile::link(QStringLiteral("nowhere/at all"), trap));
    QStringList lines = reportsOf([this] { installBuiltInThemes(*m_config); });
    QCOMPARE(lines.size(), 1);
    QVERIFY2(!lines.first().contains(u'(') && lines.first().contains(u"Themes"), qPrintable(lines.first()));

    // A name too long for a folder is reported, the next theme is written.
    QVERIFY(QFile::remove(trap));
    m_config->setAvailableThemes({QString(300, u'x'), QStringLiteral("1988")});
    lines = reportsOf([this] { installBuiltInThemes(*m_config); });
    QCOMPARE(lines.size(), 1);
    QCOMPARE(filesIn(themes()), QStringList(QStringLiteral("1988")));
}

void ThemeStoreTest::elementsFallBack_data()
{
    using Accessor = QImage (*)(const Config &, qreal);
    QTest::addColumn<Accessor>("image");
    QTest::addColumn<QString>("builtIn");
    QTest::newRow("tab-leading") << &tabLeadingImage << QStringLiteral("2024-tab-leading");
    QTest::newRow("tab-trailing") << &tabTrailingImage << QStringLiteral("2024-tab-trailing");
    QTest::newRow("tile") << &tileImage << QStringLiteral("2024-tile");
    QTest::newRow("tab-leading-vertical")
        << &tabLeadingVerticalImage << QStringLiteral("2024-tab-leading-vertical");
    QTest::newRow("tab-trailing-vertical")
        << &tabTrailingVerticalImage << QStringLiteral("2024-tab-trailing-vertical");
    QTest::newRow("tile-vertical") << &tileVerticalImage << QStringLiteral("2024-tile-vertical");
    QTest::newRow("close") << &closeImage << QStringLiteral("2024-close");
    QTest::newRow("minimize") << &minimizeImage << QStringLiteral("2024-minimize");
    QTest::newRow("calendar") << &calendarImage << QStringLiteral("calendar");
    QTest::newRow("home") << &homeImage << QStringLiteral("switch.2");
}

void ThemeStoreTest::elementsFallBack()
{
    using Accessor = QImage (*)(const Config &, qreal);
    QFETCH(Accessor, image);
    QFETCH(QString, builtIn);
    m_config->setCurrentTheme(QStringLiteral("mine"));
    const QImage fallback =
        symbolNames().contains(builtIn) ? fallbackSymbol(*m_config, builtIn, 2) : builtInImage(builtIn, 2);
    QVERIFY(!fallback.isNull());
    QCOMPARE(image(*m_config, 2), fallback);
    // The theme's own file, and a damaged one.
    const QString name = QStringLiteral("mine/Chrome/%1.png").arg(QLatin1String(QTest::currentDataTag()));
    put(name, "<svg xmlns='http://www.w3.org/2000/svg' width='7' height='9'/>");
    QCOMPARE(image(*m_config, 2).deviceIndependentSize(), QSizeF(7, 9));
    put(name, "no picture");
    QCOMPARE(image(*m_config, 2), fallback);
}

void ThemeStoreTest::elementsComeFromTheCurrentTheme()
{
    put(QStringLiteral("a/Chrome/tile.png"),
        "<svg xmlns='http://www.w3.org/2000/svg' width='1' height='9'/>");
    put(QStringLiteral("b/Chrome/tile.png"),
        "<svg xmlns='http://www.w3.org/2000/svg' width='2' height='9'/>");
    for (const auto &[theme, width] : {std::pair(u"a", 1), std::pair(u"b", 2), std::pair(u"a", 1)}) {
        m_config->setCurrentTheme(QString::fromUtf16(theme));
        QCOMPARE(tileImage(*m_config, 1).width(), width);
    }
}

// The question mark was grey on every tile, and hardly to be seen on a grey one.
void ThemeStoreTest::fallbackSymbolsShowOnTheTile()
{
    m_config->setCurrentTheme(QStringLiteral("mine"));
    for (const int lightness : {0x10, 0x70, 0xb0, 0xf0}) {
        const QColor tile(lightness, lightness, lightness);
        put(QStringLiteral("mine/Chrome/tile.png"),
            "<svg xmlns='http://www.w3.org/2000/svg' width='44' height='44'><path d='M0 0h44v44h-44z' fill='"
                + tile.name().toLatin1() + "'/></svg>");
        const QImage symbol = iconImage(*m_config, QStringLiteral("gone"), 2);
        int strongest = 0;
        for (int y = 0; y < symbol.height(); ++y) {
            for (int x = 0; x < symbol.width(); ++x) {
                if (qAlpha(symbol.pixel(x, y)) == 255)
                    strongest = qMax(strongest, qAbs(qGray(symbol.pixel(x, y)) - lightness));
            }
        }
        QVERIFY2(strongest > 100, qPrintable(tile.name()));
    }
}

void ThemeStoreTest::iconNamesAreThoseOfPngFiles()
{
    m_config->setCurrentTheme(QStringLiteral("mine"));
    for (const char16_t *name : {u"a.png", u"B.png", u"c.PNG", u".hidden", u"notes.txt", u".png", u"d.png.",
                                 u"png", u".e.png", u"f.g.png", u"ƒ.png", u"h .png", u"i. png"})
        put(QStringLiteral("mine/Icons/") + QString::fromUtf16(name));
    QVERIFY(QDir().mkpath(file(QStringLiteral("mine/Icons/folder.png"))));
    QVERIFY(QFile::link(QStringLiteral("nowhere"), file(QStringLiteral("mine/Icons/broken.png"))));
    QStringList names = currentThemeIconNames(*m_config);
    names.sort();
    QCOMPARE(names,
             QStringList({QStringLiteral(".e"), QStringLiteral("B"), QStringLiteral("a"),
                          QStringLiteral("broken"), QStringLiteral("f.g"), QStringLiteral("folder"),
                          QStringLiteral("h "), QStringLiteral("ƒ")}));
}

void ThemeStoreTest::iconsOfAMissingThemeAreReported()
{
    QStringList names(QStringLiteral("not asked yet"));
    const QStringList lines = reportsOf([&] { names = currentThemeIconNames(*m_config); });
    QCOMPARE(names, QStringList());
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().contains(file(QStringLiteral("2024/Icons"))), qPrintable(lines.first()));
}

void ThemeStoreTest::iconImages()
{
    m_config->setCurrentTheme(QStringLiteral("mine"));
    const auto svg = [](int width) {
        return "<svg xmlns='http://www.w3.org/2000/svg' height='9' width='" + QByteArray::number(width)
            + "'/>";
    };
    put(QStringLiteral("mine/Chrome/default.png"), svg(1));
    put(QStringLiteral("mine/Icons/default.png"), svg(2));
    put(QStringLiteral("mine/Icons/Default.png"), svg(3));
    QCOMPARE(iconImage(*m_config, QStringLiteral("default"), 1).width(), 1);
    QCOMPARE(iconImage(*m_config, QStringLiteral("Default"), 1).width(), 3);
    QCOMPARE(reportsOf([this] {
                 QCOMPARE(iconImage(*m_config, QStringLiteral("gone")),
                          fallbackSymbol(*m_config, QStringLiteral("questionmark.square")));
             }),
             QStringList());
}

void ThemeStoreTest::applicationIcon()
{
    m_config->setAppIcon(QStringLiteral("2000"));
    QCOMPARE(reportsOf([this] { applyAppIcon(*m_config); }), QStringList());
    const QImage set = QGuiApplication::windowIcon().pixmap(64).toImage();
    const QString preview = QStringLiteral("2000-preview");
    QCOMPARE(set.convertToFormat(QImage::Format_ARGB32_Premultiplied), builtInImage(preview, 1));
    for (const char16_t *name : {u"2001", u"default", u"", u"../appicons/Default", u"Default.png"}) {
        m_config->setAppIcon(QString::fromUtf16(name));
        QCOMPARE(reportsOf([this] { applyAppIcon(*m_config); }),
                 QStringList(QStringLiteral("Failed to load icon: ") + m_config->appIcon()));
        QCOMPARE(QGuiApplication::windowIcon().pixmap(64).toImage(), set);
    }
}

QTEST_MAIN(ThemeStoreTest)
#include "tst_themestore.moc"
