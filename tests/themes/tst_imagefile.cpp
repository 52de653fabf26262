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
    void formatIsToldByContent();
    void densityComesFromTheFile();
    void unfitFilesAreNoPictures_data();
    void unfitFilesAreNoPictures();
    void changesShowAtOnce();
    void unusedPicturesGoFirst();
    void savedPicturesNeedNoDecoder();
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

void ImageFileTest::formatIsToldByContent()
{
    QList<std::pair<QByteArray, QSize>> cases = {
        {gif, {1, 1}},
        {"\xef\xbb\xbf<?xml version='1.0'?>\n<!DOCTYPE svg>\n" + drawing, {20, 10}},
        {encoded(checkered({20, 10}), "ppm"), {0, 0}}}; // a reader of the system's that is not ours
    for (const char *format : {"png", "tiff", "jpeg", "webp", "bmp"})
        cases.append({encoded(checkered({20, 10}), format), {20, 10}});
    for (const auto &[bytes, size] : cases) {
        write(path(), bytes);
        const QImage image = imageFromFile(path(), 1);
        QVERIFY2(image.size() == size, bytes.first(20).toPercentEncoding().constData());
        QVERIFY(image.isNull() || image.format() == QImage::Format_ARGB32_Premultiplied);
    }
}

void ImageFileTest::densityComesFromTheFile()
{
    struct Case
    {
        int dotsPerMeter, width;
        qreal scale, points;
        int pixels;
    };
    for (const Case &c : {Case{2835, 88, 2, 88, 88}, Case{5669, 88, 2, 44, 88}, Case{5668, 88, 2, 44, 88},
                          Case{5671, 88, 2, 88, 88}, Case{5669, 88, 1.25, 44, 88}, Case{5669, 88, 1, 44, 44},
                          Case{5669, 87, 1, 43.5, 87}}) {
        write(path(), encoded(checkered({c.width, 44}, c.dotsPerMeter), "png"));
        const QImage image = imageFromFile(path(), c.scale);
        const QString what = u"%1 dots, scale %2"_qs.arg(c.dotsPerMeter).arg(c.scale);
        QVERIFY2(image.deviceIndependentSize().width() == c.points, qPrintable(what));
        QVERIFY2(image.width() == c.pixels, qPrintable(what));
    }
    write(path(), drawing);
    for (const int scale : {1, 2, 3, 1}) {
        QCOMPARE(imageFromFile(path(), scale).size(), QSize(20, 10) * scale);
        QCOMPARE(imageFromFile(path(), scale).deviceIndependentSize(), QSizeF(20, 10));
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
    row("endless device", [](const QString &path) { QFile::link(u"/dev/zero"_qs, path); });
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
    holding("text", "This is a picture of a house.\n");
    holding("a mark and nothing else", "BM");
    for (const char *format : {"png", "tiff", "jpeg", "webp", "bmp"}) {
        const QByteArray whole = encoded(checkered(QSize(60, 60)), format);
        for (const int part : {20, 2}) // without its last twentieth, and half of it
            holding(qPrintable(u"%1 without 1/%2"_qs.arg(QLatin1String(format)).arg(part)),
                    whole.chopped(whole.size() / part));
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
        const QString pipe = path + u".pipe"_qs;
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

void ImageFileTest::changesShowAtOnce()
{
    // Uncompressed, so that both have the same size; all of this happens within a second.
    const QByteArray red = encoded(checkered(QSize(8, 8)), "bmp");
    QByteArray blue = red;
    blue[blue.size() - 60] = char(blue.at(blue.size() - 60) ^ 0x55);
    for (const bool inPlace : {true, false}) {
        const auto shown = [&](const QByteArray &bytes) {
            if (!inPlace)
                QFile::remove(path());
            write(path(), bytes);
            return imageFromFile(path());
        };
        const QImage first = shown(red);
        QVERIFY(!first.isNull());
        for (int round = 0; round < 20; ++round) {
            const QImage second = shown(blue);
            QVERIFY(!second.isNull() && second != first);
            QCOMPARE(shown(red), first);
        }
        QVERIFY(shown("no picture").isNull());
        QFile::remove(path());
        QVERIFY(imageFromFile(path()).isNull());
        QCOMPARE(shown(red), first);
    }
}

void ImageFileTest::unusedPicturesGoFirst()
{
    const QImage image = checkered(QSize(512, 512)); // a megabyte
    QVERIFY(isMade(u"kept"_qs, image));
    QVERIFY(isMade(u"unused"_qs, image));
    for (int i = 0; i < 40; ++i) {
        QVERIFY(isMade(QString::number(i), image));
        QVERIFY(!isMade(u"kept"_qs, image));
    }
    QVERIFY(isMade(u"unused"_qs, image));
}

void ImageFileTest::savedPicturesNeedNoDecoder()
{
    QImage sharp = checkered(QSize(88, 44)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    sharp.setDevicePixelRatio(2);
    const QImage small = checkered(QSize(3, 5)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QVERIFY(isMade(u"sharp"_qs, sharp));
    QVERIFY(isMade(u"small"_qs, small));
    saveImageCache();
    clearImageCache();
    QVERIFY(!isMade(u"small"_qs, small));
    QVERIFY(!isMade(u"sharp"_qs, sharp));
    const auto none = [] { return QImage(); };
    QCOMPARE(cachedImage(u"sharp"_qs, oldFile, 2, none).deviceIndependentSize(), QSizeF(44, 22));
    // Another state of the file, or another density, is another picture.
    clearImageCache();
    FileIdentity changed = oldFile;
    ++changed.changed;
    QVERIFY(cachedImage(u"sharp"_qs, changed, 2, none).isNull());
    QVERIFY(cachedImage(u"small"_qs, oldFile, 1, none).isNull());
}

void ImageFileTest::damagedSavedPicturesAreMadeAnew()
{
    const QImage image = checkered(QSize(40, 40)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QString key = u"picture"_qs;
    QVERIFY(isMade(key, image));
    saveImageCache();
    const QString saved = path("cache/pondWicket/pictures");
    QFile file(saved);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const auto flipped = [&](qsizetype place) {
        return QByteArray(bytes).replace(place, 1, QByteArray(1, char(bytes.at(place) ^ 1)));
    };
    for (const QByteArray &damaged : {QByteArray(), QByteArray(5000, 'x'), bytes.chopped(16), bytes.left(40),
                                      flipped(90), flipped(bytes.size() - 20)}) {
        write(saved, damaged);
        clearImageCache();
        QVERIFY2(isMade(key, image), qPrintable(QString::number(damaged.size())));
        saveImageCache();
        clearImageCache();
        QVERIFY(!isMade(key, image));
    }
    QVERIFY(QFile::remove(saved) && ::mkfifo(QFile::encodeName(saved).constData(), 0600) == 0);
    clearImageCache();
    QVERIFY(isMade(key, image));
    saveImageCache();
    clearImageCache();
    QVERIFY(!isMade(key, image));
    QVERIFY(QFile::remove(saved) && QDir().mkpath(saved));
    clearImageCache();
    QVERIFY(isMade(key, image));
    saveImageCache(); // a folder in its place stays: nothing is said, nothing is lost
    QVERIFY(QFileInfo(saved).isDir());
}

QTEST_GUILESS_MAIN(ImageFileTest)
#include "tst_imagefile.moc"
