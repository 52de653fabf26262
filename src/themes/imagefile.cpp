// SPDX-License-Identifier: MIT
#include "themes/imagefile.h"

#include "platform/files.h"

#include <QBuffer>
#include <QCache>
#include <QFile>
#include <QImageReader>
#include <QRegularExpression>

#include <cstdlib>
#include <optional>

#include <sys/stat.h>
#include <time.h>

namespace themes {

namespace {

constexpr qint64 maxFileSize = 20 << 20; // a picture of the largest size without compression, and some
constexpr int allocationLimit = 16; // megabytes, for whatever a decoder makes of a header
constexpr qsizetype roomInBytes = 32 << 20;

/// What tells one state of a file from another. The time of the last status change also sees a file replaced
/// by a copy that kept its times, and permissions taken away.
struct Identity
{
    quint64 device = 0, inode = 0;
    qint64 size = 0, modified = 0, changed = 0; // nanoseconds

    bool operator==(const Identity &) const = default;
};

qint64 nanoseconds(const timespec &time)
{
    return time.tv_sec * qint64(1'000'000'000) + time.tv_nsec;
}

/// Nothing unless a regular file of bearable size stands there.
std::optional<Identity> identityOf(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size > maxFileSize)
        return std::nullopt;
    return Identity{status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
                    nanoseconds(status.st_ctim)};
}

/// A file changed within the clock's grain may change again without showing it.
bool isSettled(const Identity &identity)
{
    constexpr qint64 grain = 20'000'000;
    timespec now;
    ::clock_gettime(CLOCK_REALTIME, &now);
    return std::abs(nanoseconds(now) - identity.changed) > grain;
}

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
    const QByteArray text = bytes.startsWith("\xef\xbb\xbf") ? bytes.mid(3, 4096) : bytes.left(4096);
    return text.trimmed().startsWith('<') && text.contains("<svg") ? "svg" : "";
}

/// The SVG reader opens the files that a drawing names, pipes included, and draws nested uses as often as
/// their product says. A drawing that does either is no picture for us; neither is one that hides its text.
bool isPlainDrawing(const QByteArray &svg)
{
    static const QRegularExpression reference(
        QStringLiteral("<!(DOCTYPE|ENTITY)|<([^\\s<>/:]+:)?(image|use)[\\s/>]"),
        QRegularExpression::CaseInsensitiveOption);
    return !svg.contains('\0') && !QString::fromLatin1(svg).contains(reference);
}

/// Decoders that fill up what is missing call a cut-off file a picture all the same.
bool isCutOff(const QByteArray &bytes, const QByteArray &format)
{
    if (format == "jpeg")
        return !bytes.right(1024).contains("\xff\xd9");
    if (format == "gif")
        return !bytes.right(1024).contains('\x3b');
    return false;
}

QImage decode(const QByteArray &bytes, int density)
{
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
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > maxImageSide || size.height() > maxImageSide)
        return QImage();
    QImage image = reader.read();
    if (image.isNull())
        return QImage();
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    constexpr int doubleDensity = 5669; // dots per metre: 144 per inch
    if (std::abs(image.dotsPerMeterX() - doubleDensity) <= 1
        && std::abs(image.dotsPerMeterY() - doubleDensity) <= 1)
        image.setDevicePixelRatio(2);
    return image;
}

/// Halved once, here, rather than by the painter at every redraw.
QImage reducedTo(int density, const QImage &image)
{
    if (density > 1 || image.devicePixelRatio() != 2 || image.width() % 2 || image.height() % 2)
        return image;
    QImage half = image.scaled(image.size() / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    half.setDevicePixelRatio(1);
    return half;
}

struct Entry
{
    Identity identity;
    int density;
    bool settled;
    QImage image; // null for a file that is no picture: not to be read again either
};

} // namespace

QImage imageFromFile(const QString &path, qreal scale)
{
    static QCache<QString, Entry> entries(roomInBytes);
    const int density = densityFor(scale);
    const auto identity = identityOf(path);
    if (!identity)
        return QImage();
    const Entry *known = entries.object(path);
    if (known && known->settled && known->identity == *identity && known->density == density)
        return known->image;

    const bool settled = isSettled(*identity);
    const auto bytes = platform::readWholeFile(path, nullptr, maxFileSize);
    const QImage image = bytes ? reducedTo(density, decode(*bytes, density)) : QImage();
    const qsizetype cost = qBound<qsizetype>(256, image.sizeInBytes(), roomInBytes);
    entries.insert(path, new Entry{*identity, density, settled, image}, cost);
    return image;
}

} // namespace themes
