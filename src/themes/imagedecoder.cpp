// SPDX-License-Identifier: MIT
#include "themes/imagedecoder.h"

#include "themes/svgimage.h"

#include <QBuffer>
#include <QImageReader>
#include <QXmlStreamReader>
#include <QtEndian>

#include <cstdlib>

namespace themes {

namespace {

/// The format that the first bytes announce, in the reader's words; empty for what no theme may hold. Given
/// to the reader, which otherwise loads every plugin there is to ask each for its opinion.
QByteArray formatOf(const QByteArray &bytes)
{
    struct Mark
    {
        QByteArrayView start;
        const char *format;
    };
    static constexpr Mark marks[] = {
        {"\x89PNG\r\n\x1a\n", "png"},
        {QByteArrayView("II*\0", 4), "tiff"},
        {QByteArrayView("MM\0*", 4), "tiff"},
        {"\xff\xd8\xff", "jpeg"},
        {"GIF8", "gif"},
        {"BM", "bmp"},
    };
    for (const Mark &mark : marks) {
        if (bytes.startsWith(mark.start))
            return mark.format;
    }
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return "webp";
    const QByteArray head = bytes.left(4096);
    return head.contains('<') && head.contains("svg") ? "svg" : "";
}

/// Some decoders fill up what is missing and call a cut-off file a picture all the same; others complain on
/// standard error at every start.
bool isCutOff(const QByteArray &bytes, const QByteArray &format)
{
    const QByteArray end = bytes.last(qMin<qsizetype>(1024, bytes.size()));
    const auto pointsOutside = [&bytes](qsizetype at, bool bigEndian) {
        if (at + 4 > bytes.size())
            return true;
        const char *field = bytes.constData() + at;
        return (bigEndian ? qFromBigEndian<quint32>(field) : qFromLittleEndian<quint32>(field))
            > bytes.size();
    };
    if (format == "png")
        return !end.contains("IEND");
    if (format == "jpeg")
        return !end.contains("\xff\xd9");
    if (format == "tiff") // the place of the first directory
        return pointsOutside(4, bytes.startsWith("MM"));
    if (format == "bmp") // the size of the file
        return pointsOutside(2, false);
    return false;
}

/// The SVG reader opens every file that a drawing names, pipes included, and draws nested uses as often as
/// their product says: a drawing with either is no picture for us.
bool isPlainDrawing(const QByteArray &svg)
{
    constexpr qsizetype maxSize = 128 << 10; // thousands of shapes
    if (svg.size() > maxSize)
        return false;
    QXmlStreamReader xml(svg);
    xml.setNamespaceProcessing(false);
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::DTD && !xml.entityDeclarations().isEmpty())
            return false;
        const QStringView name = xml.name().mid(xml.name().lastIndexOf(u':') + 1);
        if (token == QXmlStreamReader::StartElement && (name == u"image" || name == u"use"))
            return false;
    }
    return !xml.hasError();
}

} // namespace

QImage decodeImage(const QByteArray &bytes, int density)
{
    constexpr int allocationLimit = 16; // megabytes: a picture of the largest size
    constexpr int doubleDensity = 5669; // dots per metre: 144 per inch
    const QByteArray format = formatOf(bytes);
    if (format.isEmpty() || isCutOff(bytes, format))
        return QImage();
    QImageReader::setAllocationLimit(allocationLimit);
    if (format == "svg")
        return isPlainDrawing(bytes) ? svgImage(bytes, density) : QImage();

    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const auto fits = [](QSize size) {
        return !size.isEmpty() && size.width() <= maxImageSide && size.height() <= maxImageSide;
    };
    if (!fits(reader.size()))
        return QImage();
    QImage image = reader.read();
    if (!fits(image.size())) // a GIF's canvas may be larger than its first frame
        return QImage();
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1);
    const auto isDouble = [](qint64 dots) { return std::abs(dots - doubleDensity) <= 1; };
    if (isDouble(image.dotsPerMeterX()) && isDouble(image.dotsPerMeterY()))
        image.setDevicePixelRatio(2);
    return image;
}

} // namespace themes
