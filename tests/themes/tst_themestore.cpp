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
    void installedPicturesAreTheDrawings();
    void nothingIsInstalledBesideWhatStands();
    void unknownThemeEndsTheInstallation();
    void installationGoesOnAfterFailures();
    void elementsFallBack();
    void fallbackSymbolsShowOnTheTile();
    void iconNamesAreThoseOfPngFiles();
    void iconImages();
    void applicationIcon();

private:
    QString themes() const { return m_documents->filePath(u"pondWicket ƒ/Themes"_qs); }
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

QByteArray svg(int width)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' height='9' width='" + QByteArray::number(width) + "'/>";
}

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
    QCOMPARE(filesIn(themes()), m_config->availableThemes());
    for (const QString &theme : filesIn(themes())) {
        QCOMPARE(filesIn(file(theme)), QStringList({u"Chrome"_qs, u"Icons"_qs}));
        QCOMPARE(filesIn(chromeFolderURL(*m_config, theme)).size(), 11);
        QCOMPARE(filesIn(iconsFolderURL(*m_config, theme)).size(), builtInIconNames(theme).size());
    }
    const auto bytes = platform::readWholeFile(file(u"2010/Icons/folder-violet.png"_qs), nullptr);
    QVERIFY(bytes && bytes->startsWith(QByteArrayView("II*\0", 4)));
}

void ThemeStoreTest::installedPicturesAreTheDrawings()
{
    installBuiltInThemes(*m_config);
    for (const QString &theme : m_config->availableThemes()) {
        m_config->setCurrentTheme(theme);
        for (const QString &name : builtInIconNames(theme))
            QVERIFY2(iconImage(*m_config, name, 2) == drawBuiltInImage(theme + u'-' + name, 2),
                     qPrintable(name));
        QCOMPARE(tileImage(*m_config, 2), drawBuiltInImage(theme + u"-tile"_qs, 2));
        QCOMPARE(homeImage(*m_config, 2), drawBuiltInImage(theme + u"-home"_qs, 2));
        QCOMPARE(tabLeadingImage(*m_config, 1).size(), QSize(14, 44));
    }
}

void ThemeStoreTest::nothingIsInstalledBesideWhatStands()
{
    QVERIFY(QDir().mkpath(themes()));
    QCOMPARE(reportsOf([this] { installBuiltInThemes(*m_config); }), QStringList());
    QCOMPARE(filesIn(themes()), QStringList());
    // A theme listed twice is written once.
    QVERIFY(QDir().rmdir(themes()));
    m_config->setAvailableThemes({u"1988"_qs, u"1988"_qs});
    QCOMPARE(reportsOf([this] { installBuiltInThemes(*m_config); }), QStringList());
    QCOMPARE(filesIn(themes()), QStringList(u"1988"_qs));
}

void ThemeStoreTest::unknownThemeEndsTheInstallation()
{
    m_config->setAvailableThemes({u"1988"_qs, u"mine"_qs, u"2024"_qs});
    QCOMPARE(reportsOf([this] { installBuiltInThemes(*m_config); }), QStringList(u"Image not found."_qs));
    QCOMPARE(filesIn(themes()), QStringList({u"1988"_qs, u"mine"_qs}));
    QCOMPARE(filesIn(file(u"mine"_qs)), QStringList(u"Chrome"_qs));
    QCOMPARE(filesIn(file(u"mine/Chrome"_qs)), QStringList());
}

void ThemeStoreTest::installationGoesOnAfterFailures()
{
    // A dangling link does not exist, and no folder can be made in its place.
    const QString trap = themes();
    QVERIFY(QDir().mkpath(QFileInfo(trap).path()));
    QVERIFY(QFile::link(u"nowhere/at all"_qs, trap));
    QStringList lines = reportsOf([this] { installBuiltInThemes(*m_config); });
    QCOMPARE(lines.size(), 1);
    QVERIFY2(!lines.first().contains(u'(') && lines.first().contains(u"Themes"), qPrintable(lines.first()));

    // A name too long for a folder is reported, the next theme is written.
    QVERIFY(QFile::remove(trap));
    m_config->setAvailableThemes({QString(300, u'x'), u"1988"_qs});
    lines = reportsOf([this] { installBuiltInThemes(*m_config); });
    QCOMPARE(lines.size(), 1);
    QCOMPARE(filesIn(themes()), QStringList(u"1988"_qs));
}

void ThemeStoreTest::elementsFallBack()
{
    const std::tuple<QImage (*)(const Config &, qreal), const char16_t *, const char16_t *> elements[] = {
        {&tabLeadingImage, u"tab-leading", u"2024-tab-leading"},
        {&tabTrailingImage, u"tab-trailing", u"2024-tab-trailing"},
        {&tileImage, u"tile", u"2024-tile"},
        {&tabLeadingVerticalImage, u"tab-leading-vertical", u"2024-tab-leading-vertical"},
        {&tabTrailingVerticalImage, u"tab-trailing-vertical", u"2024-tab-trailing-vertical"},
        {&tileVerticalImage, u"tile-vertical", u"2024-tile-vertical"},
        {&closeImage, u"close", u"2024-close"},
        {&minimizeImage, u"minimize", u"2024-minimize"},
        {&calendarImage, u"calendar", u"calendar"},
        {&homeImage, u"home", u"switch.2"}};
    for (const auto &[image, element, name] : elements) {
        m_config->setCurrentTheme(u"mine"_qs);
        const QString builtIn = QString::fromUtf16(name);
        const QImage fallback = symbolNames().contains(builtIn) ? fallbackSymbol(*m_config, builtIn, 2)
                                                                : builtInImage(builtIn, 2);
        QVERIFY(!fallback.isNull());
        QVERIFY2(image(*m_config, 2) == fallback, qPrintable(builtIn));
        // The theme's own file, another theme's, and a damaged one.
        const QString path = u"mine/Chrome/%1.png"_qs.arg(QString::fromUtf16(element));
        put(path, svg(7));
        QVERIFY2(image(*m_config, 2).deviceIndependentSize() == QSizeF(7, 9), qPrintable(builtIn));
        put(u"other"_qs + path.mid(4), svg(8));
        m_config->setCurrentTheme(u"other"_qs);
        QCOMPARE(image(*m_config, 1).width(), 8);
        m_config->setCurrentTheme(u"mine"_qs);
        QCOMPARE(image(*m_config, 1).width(), 7);
        put(path, "no picture");
        QVERIFY2(image(*m_config, 2) == fallback, qPrintable(builtIn));
        QVERIFY(QFile::remove(file(path)));
    }
}

// The question mark was grey on every tile, and hardly to be seen on a grey one.
void ThemeStoreTest::fallbackSymbolsShowOnTheTile()
{
    m_config->setCurrentTheme(u"mine"_qs);
    for (const int lightness : {0x10, 0x70, 0xb0, 0xf0}) {
        const QColor tile(lightness, lightness, lightness);
        put(u"mine/Chrome/tile.png"_qs,
            "<svg xmlns='http://www.w3.org/2000/svg' width='44' height='44'><path d='M0 0h44v44h-44z' fill='"
                + tile.name().toLatin1() + "'/></svg>");
        const QImage symbol = iconImage(*m_config, u"gone"_qs, 2);
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
    m_config->setCurrentTheme(u"mine"_qs);
    QStringList names(u"not asked yet"_qs);
    const QStringList lines = reportsOf([&] { names = currentThemeIconNames(*m_config); });
    QCOMPARE(names, QStringList());
    QVERIFY(lines.size() == 1 && lines.first().contains(file(u"mine/Icons"_qs)));

    for (const char16_t *name : {u"a.png", u"B.png", u"c.PNG", u".hidden", u"notes.txt", u".png", u"d.png.",
                                 u"png", u".e.png", u"f.g.png", u"ƒ.png", u"h .png"})
        put(u"mine/Icons/"_qs + QString::fromUtf16(name));
    QVERIFY(QDir().mkpath(file(u"mine/Icons/folder.png"_qs)));
    QVERIFY(QFile::link(u"nowhere"_qs, file(u"mine/Icons/broken.png"_qs)));
    names = currentThemeIconNames(*m_config);
    names.sort();
    QCOMPARE(names.join(u'|'), u".e|B|a|broken|f.g|folder|h |ƒ"_qs);
}

void ThemeStoreTest::iconImages()
{
    m_config->setCurrentTheme(u"mine"_qs);
    put(u"mine/Chrome/default.png"_qs, svg(1));
    put(u"mine/Icons/default.png"_qs, svg(2));
    put(u"mine/Icons/Default.png"_qs, svg(3));
    QCOMPARE(iconImage(*m_config, u"default"_qs, 1).width(), 1);
    QCOMPARE(iconImage(*m_config, u"Default"_qs, 1).width(), 3);
    QCOMPARE(reportsOf([this] {
                 QCOMPARE(iconImage(*m_config, u"gone"_qs),
                          fallbackSymbol(*m_config, u"questionmark.square"_qs));
             }),
             QStringList());
}

void ThemeStoreTest::applicationIcon()
{
    m_config->setAppIcon(u"2000"_qs);
    QCOMPARE(reportsOf([this] { applyAppIcon(*m_config); }), QStringList());
    const QImage set = QGuiApplication::windowIcon().pixmap(64).toImage();
    const QString preview = u"2000-preview"_qs;
    QCOMPARE(set.convertToFormat(QImage::Format_ARGB32_Premultiplied), builtInImage(preview, 1));
    for (const char16_t *name : {u"2001", u"default", u"", u"../appicons/Default", u"Default.png"}) {
        m_config->setAppIcon(QString::fromUtf16(name));
        QCOMPARE(reportsOf([this] { applyAppIcon(*m_config); }),
                 QStringList(u"Failed to load icon: "_qs + m_config->appIcon()));
        QCOMPARE(QGuiApplication::windowIcon().pixmap(64).toImage(), set);
    }
}

QTEST_MAIN(ThemeStoreTest)
#include "tst_themestore.moc"
