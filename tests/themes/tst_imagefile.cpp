// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "themes/imagecache.h"
#include "themes/imagefile.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace themes;

namespace {

const platform::FileStamp oldFile = {1, 2, 3, 4};

const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                           "<rect width='20' height='10' fill='#204060'/></svg>";
// One pixel; nothing that is installed writes this format.
const QByteArray gif = QByteArray::fromHex("47494638396101000100800000ff0000000000"
                                           "2c00000000010001000002024401003b");

QImage striped(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(0xfff0f0f0);
    for (int x = 0; x < size.width(); ++x)
        image.setPixel(x, x % size.height(), 0xff2040c0);
    return image;
}

QByteArray encoded(const QImage &image, const char *format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(image);
    return buffer.data();
}

/// The picture that the cache has, or else `made`.
QImage cached(const QImage &made = {}, const platform::FileStamp &stamp = oldFile, int density = 2)
{
    return cachedImage(u"picture"_qs, stamp, density, [&made] { return made; });
}

} // namespace

class ImageFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CACHE_HOME", QFile::encodeName(path(u"cache"_qs)));
        clearImageCache();
    }

    void densityComesFromTheFile()
    {
        using Case = std::tuple<int, int, qreal, qreal, int>;
        for (const auto &[dotsPerMeter, width, scale, points, pixels] :
             {Case{5668, 88, 2, 44, 88}, Case{5671, 88, 2, 88, 88}, Case{5669, 88, 1.25, 44, 88},
              Case{5669, 88, 1, 44, 44}, Case{5669, 87, 1, 43.5, 87}}) {
            QImage written = striped({width, 44});
            written.setDotsPerMeterX(dotsPerMeter);
            written.setDotsPerMeterY(dotsPerMeter);
            const QImage image = reading(encoded(written, "png"), scale);
            const QString what = u"%1 dots, scale %2"_qs.arg(dotsPerMeter).arg(scale);
            QVERIFY2(image.deviceIndependentSize().width() == points, qPrintable(what));
            QVERIFY2(image.width() == pixels, qPrintable(what));
        }
        for (const int scale : {1, 2, 3, 1})
            QCOMPARE(reading(drawing, scale).size(), QSize(20, 10) * scale);
    }

    void contentDecides()
    {
        QCOMPARE(reading(gif).size(), QSize(1, 1));
        QCOMPARE(reading("\xef\xbb\xbf<?xml version='1.0'?>\n<!DOCTYPE svg>\n" + drawing).size(),
                 QSize(20, 10));
        const auto check = [this](const QByteArray &what, const QByteArray &bytes) {
            QVERIFY2(reading(bytes).isNull(), what.constData());
        };
        for (const char *format : {"png", "tiff", "jpeg", "webp", "bmp"}) {
            const QByteArray whole = encoded(striped(QSize(60, 60)), format);
            QVERIFY2(reading(whole).size() == QSize(60, 60), format);
            check(format + QByteArray(" without its last twentieth"), whole.chopped(whole.size() / 20));
            check(format + QByteArray(" cut in half"), whole.chopped(whole.size() / 2));
            check(format + QByteArray(" a pixel too wide"), encoded(striped(QSize(2049, 1)), format));
        }
        check("a reader of the system's that is not ours", encoded(striped(QSize(9, 9)), "ppm"));
        check("a mark and nothing else", "BM");
        QByteArray huge = encoded(striped(QSize(8, 8)), "bmp");
        huge.replace(18, 8, QByteArray("\x30\x75\0\0\x30\x75\0\0", 8)); // width and height
        check("30,000 by 30,000 pixels by its header", huge);
        for (const char *size : {"\x01\x09", "\xff\xff"})
            check("gif of a small frame in a large canvas", QByteArray(gif).replace(6, 2, size, 2));
        QByteArray below = encoded(striped(QSize(8, 8)), "bmp"); // -2^31 dots per metre, whose sum overflowed
        QCOMPARE(reading(below.replace(38, 4, QByteArray("\0\0\0\x80", 4))).size(), QSize(8, 8));
        check("svg cut off", drawing.left(drawing.size() / 2));
        check("svg of 30,000 points", QByteArray(drawing).replace("'20'", "'30000'"));
        const auto svgHolding = [](const QByteArray &shapes) {
            return QByteArray(drawing).replace("</svg>", shapes + "</svg>");
        };
        check("svg of thousands of shapes", svgHolding(QByteArray("<circle/>").repeated(15000)));
        // Each of these once held the reader for ever.
        const QByteArray pipe = QFile::encodeName(path(u"pipe"_qs));
        QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
        check("svg of a pipe", svgHolding("<v:image width='9' height='9' xlink:href='" + pipe + "'/>"));
        QByteArray uses = "<g id='a0'><rect width='9' height='9'/></g>";
        for (int level = 1; level < 12; ++level) {
            const QByteArray use = "<use xlink:href='#a" + QByteArray::number(level - 1) + "'/>";
            uses += "<g id='a" + QByteArray::number(level) + "'>" + use.repeated(10) + "</g>";
        }
        check("svg of uses within uses", svgHolding(uses));
        check("svg that declares entities", "<!DOCTYPE svg [<!ENTITY a 'b'>]>" + svgHolding("&a;"));
    }

    void changesShowAtOnce()
    {
        // Uncompressed, so that both have the same size; all of this happens within a second.
        const QByteArray red = encoded(striped(QSize(8, 8)), "bmp");
        QByteArray blue = red;
        blue[blue.size() - 60] = char(blue.at(blue.size() - 60) ^ 0x55);
        const QImage first = reading(red);
        const QImage second = reading(blue);
        QVERIFY(!first.isNull() && !second.isNull() && second != first);
        QVERIFY(QFile::remove(path()));
        QVERIFY(imageFromFile(path()).isNull());
        QCOMPARE(reading(red), first);
        // Some file systems keep whole seconds: a file changed in this one may change again unseen.
        platform::FileStamp fresh = oldFile;
        fresh.changed = (QDateTime::currentSecsSinceEpoch() + 1) * 1'000'000'000;
        QCOMPARE(cached(first, fresh), first);
        QCOMPARE(cached(second, fresh), second);
    }

    void savedPicturesNeedNoDecoder()
    {
        const QString saved = path(u"cache/pondWicket/pictures"_qs);
        QImage image = striped(QSize(40, 40));
        image.setDevicePixelRatio(2);
        const auto outlivesTheProgram = [&image] {
            clearImageCache();
            cached(image);
            saveImageCache();
            clearImageCache();
            return cached() == image && cached().devicePixelRatio() == 2;
        };
        QVERIFY(outlivesTheProgram());
        // Another state of the file, or another density, is another picture.
        QVERIFY(cached({}, {1, 2, 3, 5}).isNull());
        QVERIFY(cached({}, oldFile, 1).isNull());

        const QByteArray bytes = support::bytesOf(saved);
        for (const QByteArray &damaged :
             {QByteArray(), QByteArray(5000, 'x'), bytes.chopped(16), bytes.left(40),
              QByteArray(bytes).replace(90, 1, "?"), QByteArray(bytes).replace(bytes.size() - 20, 1, "?")}) {
            support::make(saved, damaged);
            clearImageCache();
            QVERIFY2(cached().isNull() && outlivesTheProgram(), damaged.right(30).toHex().constData());
        }
        QVERIFY(QFile::remove(saved) && ::mkfifo(QFile::encodeName(saved).constData(), 0600) == 0);
        QVERIFY(outlivesTheProgram());
        QVERIFY(QFile::remove(saved) && QDir().mkpath(saved));
        QVERIFY(!outlivesTheProgram()); // a folder in its place stays: nothing is said, nothing is lost
    }

private:
    QString path(const QString &name = u"picture.png"_qs) const { return m_folder->filePath(name); }

    QImage reading(const QByteArray &bytes, qreal scale = 1) const
    {
        return imageFromFile(support::make(path(), bytes), scale);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(ImageFileTest)
#include "tst_imagefile.moc"
