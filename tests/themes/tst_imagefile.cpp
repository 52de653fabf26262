// SPDX-License-Identifier: MIT
#include "themes/imagecache.h"
#include "themes/imagefile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace themes;

class ImageFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void formatIsToldByContent_data();
    void formatIsToldByContent();
    void densityComesFromTheFile_data();
    void densityComesFromTheFile();
    void drawingsAreMadeForTheScale();
    void unfitFilesAreNoPictures_data();
    void unfitFilesAreNoPictures();
    void changesShowAtOnce_data();
    void changesShowAtOnce();
    void unusedPicturesGoFirst();
    void savedPicturesNeedNoDecoder();
    void damagedSavedPicturesAreMadeAnew_data();
    void damagedSavedPicturesAreMadeAnew();

private:
    QString path(const char *name = "picture.png") const { return m_folder->filePath(QLatin1String(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

const FileIdentity oldFile = {1, 2, 3, 4, 5};

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QImage checkered(QSize size, int dotsPerMeter = 2835)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, (x + y) % 2 ? 0xff2040c0 : 0xfff0f0f0);
    }
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    return image;
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(image);
    return bytes;
}

const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                           "<rect width='20' height='10' fill='#204060'/></svg>";
// One pixel; nothing that is installed writes this format.
const QByteArray gif = QByteArray::fromHex("47494638396101000100800000ff0000000000"
                                           "2c00000000010001000002024401003b");

/// Whether the picture had to be made, with `make` as the way to make it.
bool isMade(const QString &key, const QImage &image)
{
    bool made = false;
    const QImage kept = cachedImage(key, oldFile, 2, [&] {
        made = true;
        return image;
    });
    return made || kept != image;
}

} // namespace

void ImageFileTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CACHE_HOME", QFile::encodeName(path("cache")));
    clearImageCache();
}

void ImageFileTest::formatIsToldByContent_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");
    const QSize size(20, 10);
    for (const char *format : {"png", "tiff", "jpeg", "webp", "bmp"})
        QTest::newRow(format) << encoded(checkered(size), format) << size;
    QTest::newRow("gif") << gif << QSize(1, 1);
    QTest::newRow("svg") << drawing << size;
    QTest::newRow("svg with prolog") << "\xef\xbb\xbf<?xml version='1.0'?>\n<!DOCTYPE svg>\n" + drawing
                                     << size;
    QTest::newRow("another format of the system's readers") << encoded(checkered(size), "ppm") << QSize(0, 0);
}

void ImageFileTest::formatIsToldByContent()
{
    QFETCH(QByteArray, bytes);
    write(path(), bytes);
    const QImage image = imageFromFile(path(), 1);
    QTEST(image.size(), "size");
    QVERIFY(image.isNull() || image.format() == QImage::Format_ARGB32_Premultiplied);
}

void ImageFileTest::densityComesFromTheFile_data()
{
    QTest::addColumn<int>("dotsPerMeter");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<QSizeF>("points");
    QTest::addColumn<QSize>("pixels");
    const QSize even(88, 44);
    const QSizeF half(44, 22);
    QTest::newRow("72 dpi") << 2835 << even << 2.0 << QSizeF(even) << even;
    QTest::newRow("144 dpi") << 5669 << even << 2.0 << half << even;
    QTest::newRow("a dot less") << 5668 << even << 2.0 << half << even;
    QTest::newRow("two dots more") << 5671 << even << 2.0 << QSizeF(even) << even;
    QTest::newRow("300 dpi") << 11811 << even << 2.0 << QSizeF(even) << even;
    QTest::newRow("144 dpi between screens") << 5669 << even << 1.25 << half << even;
    QTest::newRow("144 dpi on a coarse screen") << 5669 << even << 1.0 << half << QSize(44, 22);
    QTest::newRow("144 dpi, odd size") << 5669 << QSize(87, 44) << 1.0 << QSizeF(43.5, 22) << QSize(87, 44);
}

void ImageFileTest::densityComesFromTheFile()
{
    QFETCH(int, dotsPerMeter);
    QFETCH(QSize, size);
    QFETCH(qreal, scale);
    write(path(), encoded(checkered(size, dotsPerMeter), "png"));
    const QImage image = imageFromFile(path(), scale);
    QTEST(image.deviceIndependentSize(), "points");
    QTEST(image.size(), "pixels");
}

void ImageFileTest::drawingsAreMadeForTheScale()
{
    write(path(), drawing);
    for (const qreal scale : {1.0, 2.0, 3.0, 1.0}) {
        const QImage image = imageFromFile(path(), scale);
        QCOMPARE(image.size(), (QSizeF(20, 10) * scale).toSize());
        QCOMPARE(image.deviceIndependentSize(), QSizeF(20, 10));
    }
}

void ImageFileTest::unfitFilesAreNoPictures_data()
{
    QTest::addColumn<std::function<void(QString)>>("make");
    const auto row = [](const char *name, const std::function<void(QString)> &make) {
        QTest::newRow(name) << make;
    };
    const auto holding = [&row](const char *name, const QByteArray &bytes) {
        row(name, [bytes](const QString &path) { write(path, bytes); });
    };
    const auto named = [](const QString &path) { return QFile::encodeName(path); };

    row("nothing", [](const QString &) {});
    row("folder", [](const QString &path) { QDir().mkpath(path); });
    row("pipe", [named](const QString &path) { ::mkfifo(named(path).constData(), 0600); });
    row("link to an endless device",
        [](const QString &path) { QFile::link(QStringLiteral("/dev/zero"), path); });
    row("link to itself", [](const QString &path) { QFile::link(path, path); });
    row("100 MB", [](const QString &path) {
        write(path, encoded(checkered(QSize(8, 8)), "png"));
        QFile::resize(path, 100 << 20);
    });
    row("not to be read", [named, this](const QString &path) {
        write(path, encoded(checkered(QSize(8, 8)), "png"));
        ::chmod(named(path).constData(), 0);
        // To the superuser every file is readable: look as somebody else.
        ::chmod(named(m_folder->path()).constData(), 0711);
        QVERIFY(::geteuid() != 0 || ::seteuid(65534) == 0);
    });
    holding("empty", QByteArray());
    holding("text", "This is a picture of a house.\n");
    holding("a mark and nothing else", "BM");
    for (const char *format : {"png", "tiff", "jpeg", "webp", "bmp"}) {
        const QByteArray whole = encoded(checkered(QSize(60, 60)), format);
        for (const int percent : {95, 50, 10}) {
            QTest::addRow("%s cut off at %d %%", format, percent)
                << std::function<void(QString)>([bytes = whole.left(whole.size() * percent / 100)](
                                                    const QString &path) { write(path, bytes); });
        }
        holding(format, encoded(QImage(2049, 1, QImage::Format_RGB32), format)); // a pixel too wide
    }
    QByteArray huge = encoded(checkered(QSize(8, 8)), "bmp");
    for (const int place : {18, 22}) // width and height
        huge.replace(place, 4, QByteArray("\x30\x75\0\0", 4));
    holding("30,000 by 30,000 pixels by its header", huge);
    holding("gif cut off", gif.left(20));
    holding("svg cut off", drawing.left(drawing.size() / 2));
    holding("svg of 30,000 points", QByteArray(drawing).replace("'20'", "'30000'"));
    holding("svg of thousands of shapes",
            QByteArray(drawing).replace("</svg>", QByteArray("<circle/>").repeated(15000) + "</svg>"));
    // Each of these once held the reader for ever.
    const QByteArray shape = "<rect width='20' height='10' fill='#204060'/>";
    row("svg that shows a pipe", [=](const QString &path) {
        const QString pipe = path + QStringLiteral(".pipe");
        ::mkfifo(named(pipe).constData(), 0600);
        write(path,
              QByteArray(drawing).replace(
                  shape, "<v:image width='9' height='9' xlink:href='" + named(pipe) + "'/>" + shape));
    });
    QByteArray uses = "<g id='a0'>" + shape + "</g>";
    for (int level = 1; level < 12; ++level) {
        const QByteArray use = "<use xlink:href='#a" + QByteArray::number(level - 1) + "'/>";
        uses += "<g id='a" + QByteArray::number(level) + "'>" + use.repeated(10) + "</g>";
    }
    holding("svg of uses within uses", QByteArray(drawing).replace(shape, uses));
    holding("svg that declares entities",
            "<!DOCTYPE svg [<!ENTITY a 'b'>]>" + QByteArray(drawing).replace("#204060", "&a;"));
}

void ImageFileTest::unfitFilesAreNoPictures()
{
    QFETCH(std::function<void(QString)>, make);
    make(path());
    const QImage image = imageFromFile(path());
    QCOMPARE(::seteuid(::getuid()), 0);
    QVERIFY(image.isNull());
}

void ImageFileTest::changesShowAtOnce_data()
{
    QTest::addColumn<bool>("inPlace");
    QTest::newRow("written over") << true;
    QTest::newRow("removed and made anew") << false;
}

void ImageFileTest::changesShowAtOnce()
{
    QFETCH(bool, inPlace);
    // Uncompressed, so that both have the same size; all of this happens within a second.
    const QByteArray red = encoded(checkered(QSize(8, 8)), "bmp");
    QByteArray blue = red;
    blue[blue.size() - 60] = char(blue.at(blue.size() - 60) ^ 0x55);
    const auto put = [&](const QByteArray &bytes) {
        if (!inPlace)
            QFile::remove(path());
        write(path(), bytes);
    };
    put(red);
    const QImage first = imageFromFile(path());
    QVERIFY(!first.isNull());
    for (int round = 0; round < 20; ++round) {
        put(blue);
        const QImage second = imageFromFile(path());
        QVERIFY(!second.isNull() && second != first);
        put(red);
        QCOMPARE(imageFromFile(path()), first);
    }
    put("no picture");
    QVERIFY(imageFromFile(path()).isNull());
    QFile::remove(path());
    QVERIFY(imageFromFile(path()).isNull());
    put(red);
    QCOMPARE(imageFromFile(path()), first);
}

void ImageFileTest::unusedPicturesGoFirst()
{
    const QImage image = checkered(QSize(512, 512)); // a megabyte
    QVERIFY(isMade(QStringLiteral("kept"), image));
    QVERIFY(isMade(QStringLiteral("unused"), image));
    for (int i = 0; i < 40; ++i) {
        QVERIFY(isMade(QString::number(i), image));
        QVERIFY(!isMade(QStringLiteral("kept"), image));
    }
    QVERIFY(isMade(QStringLiteral("unused"), image));
}

void ImageFileTest::savedPicturesNeedNoDecoder()
{
    QImage sharp = checkered(QSize(88, 44)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    sharp.setDevicePixelRatio(2);
    const QImage small = checkered(QSize(3, 5)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QVERIFY(isMade(QStringLiteral("sharp"), sharp));
    QVERIFY(isMade(QStringLiteral("small"), small));
    saveImageCache();
    clearImageCache();
    QVERIFY(!isMade(QStringLiteral("small"), small));
    QVERIFY(!isMade(QStringLiteral("sharp"), sharp));
    const auto none = [] { return QImage(); };
    QCOMPARE(cachedImage(QStringLiteral("sharp"), oldFile, 2, none).deviceIndependentSize(), QSizeF(44, 22));
    // Another state of the file, or another density, is another picture.
    clearImageCache();
    FileIdentity changed = oldFile;
    ++changed.changed;
    QVERIFY(cachedImage(QStringLiteral("sharp"), changed, 2, none).isNull());
    QVERIFY(cachedImage(QStringLiteral("small"), oldFile, 1, none).isNull());
}

void ImageFileTest::damagedSavedPicturesAreMadeAnew_data()
{
    QTest::addColumn<std::function<void(QString, QByteArray)>>("damage");
    const auto row = [](const char *name, const std::function<void(QString, QByteArray)> &damage) {
        QTest::newRow(name) << damage;
    };
    row("empty", [](const QString &path, const QByteArray &) { write(path, QByteArray()); });
    row("foreign", [](const QString &path, const QByteArray &) { write(path, QByteArray(5000, 'x')); });
    row("cut off", [](const QString &path, const QByteArray &bytes) { write(path, bytes.chopped(16)); });
    row("index cut off", [](const QString &path, const QByteArray &bytes) { write(path, bytes.left(40)); });
    row("one bit of the index", [](const QString &path, QByteArray bytes) {
        bytes[90] = char(bytes.at(90) ^ 1);
        write(path, bytes);
    });
    row("one bit of the pixels", [](const QString &path, QByteArray bytes) {
        bytes[bytes.size() - 20] = char(bytes.at(bytes.size() - 20) ^ 1);
        write(path, bytes);
    });
    row("a folder", [](const QString &path, const QByteArray &) {
        QFile::remove(path);
        QDir().mkpath(path);
    });
    row("a pipe", [](const QString &path, const QByteArray &) {
        QFile::remove(path);
        ::mkfifo(QFile::encodeName(path).constData(), 0600);
    });
}

void ImageFileTest::damagedSavedPicturesAreMadeAnew()
{
    QFETCH(std::function<void(QString, QByteArray)>, damage);
    const QImage image = checkered(QSize(40, 40)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QString key = QStringLiteral("picture");
    QVERIFY(isMade(key, image));
    saveImageCache();
    const QString saved = path("cache/pondWicket/pictures");
    QFile file(saved);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    damage(saved, bytes);

    clearImageCache();
    QVERIFY(isMade(key, image));
    saveImageCache(); // a folder in its place stays: nothing is said, nothing is lost
    clearImageCache();
    QCOMPARE(isMade(key, image), QFileInfo(saved).isDir());
}

QTEST_GUILESS_MAIN(ImageFileTest)
#include "tst_imagefile.moc"
