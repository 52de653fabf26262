// SPDX-License-Identifier: MIT
#include "themes/savedimages.h"

#include "platform/files.h"
#include "themes/svgimage.h"

#include <QDataStream>
#include <QFile>
#include <QStandardPaths>

#include <cstdio>
#include <cstring>

namespace themes {

namespace {

// The file: magic, size and checksum of the index, the index, then each picture's pixels from a multiple of
// `alignment`. Header and pixels are in the machine's own byte
// order; on another machine the magic differs.
constexpr quint64 magic = 0x7077'5069'7865'6c32;
constexpr qsizetype headerSize = 3 * sizeof(quint64);
constexpr qsizetype alignment = 16;
constexpr qint64 maxFileSize = 4 << 20; // a theme at triple density, and some

QString filePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        + QStringLiteral("/pondWicket/pictures");
}

constexpr qsizetype aligned(qsizetype size)
{
    return (size + alignment - 1) / alignment * alignment;
}

/// Finds damage, not forgery: eight bytes a step, since all pixels of the first frame pass through here.
quint64 checksumOf(QByteArrayView bytes)
{
    quint64 sum = quint64(bytes.size());
    qsizetype at = 0;
    for (; at + 8 <= bytes.size(); at += 8) {
        quint64 word;
        std::memcpy(&word, bytes.data() + at, 8);
        sum = (sum ^ word) * 0x9e37'79b9'7f4a'7c15;
        sum ^= sum >> 29;
    }
    for (; at < bytes.size(); ++at)
        sum = (sum ^ quint8(bytes[at])) * 0x0000'0100'0000'01b3;
    return sum;
}

} // namespace

SavedImages SavedImages::read()
{
    SavedImages saved;
    const auto file = platform::readWholeFile(filePath(), nullptr, maxFileSize);
    if (!file || file->size() < headerSize)
        return saved;
    quint64 header[3];
    std::memcpy(header, file->constData(), headerSize);
    if (header[0] != magic || header[1] > quint64(file->size() - headerSize))
        return saved;
    const QByteArrayView index = QByteArrayView(*file).sliced(headerSize, qsizetype(header[1]));
    if (checksumOf(index) != header[2])
        return saved;

    QDataStream stream(QByteArray::fromRawData(index.data(), index.size()));
    while (!stream.atEnd()) {
        QString key;
        Record record;
        platform::FileStamp &source = record.stamp;
        stream >> key >> source.device >> source.inode >> source.size >> source.changed >> record.density
            >> record.width >> record.height >> record.ratio >> record.offset >> record.checksum;
        if (stream.status() != QDataStream::Ok)
            break;
        saved.m_records.insert(key, record);
    }
    saved.m_file = *file;
    saved.m_pixels = aligned(headerSize + index.size());
    return saved;
}

QImage SavedImages::find(const QString &key, const platform::FileStamp &stamp, int density) const
{
    const auto found = m_records.constFind(key);
    if (found == m_records.constEnd() || found->stamp != stamp || found->density != density)
        return QImage();
    const Record &record = *found;
    const auto isFrom1To = [](qint32 number, int most) { return number >= 1 && number <= most; };
    if (!isFrom1To(record.width, maxImageSide) || !isFrom1To(record.height, maxImageSide)
        || !isFrom1To(record.ratio, maxDensity))
        return QImage();
    const qsizetype line = record.width * qsizetype(sizeof(QRgb));
    const qsizetype size = line * record.height;
    if (record.offset < 0 || record.offset % alignment || record.offset > m_file.size() - m_pixels - size)
        return QImage();
    const QByteArrayView pixels = QByteArrayView(m_file).sliced(m_pixels + record.offset, size);
    if (checksumOf(pixels) != record.checksum)
        return QImage();
    // The picture shares the bytes of the file and holds them.
    QImage image(
        reinterpret_cast<const uchar *>(pixels.data()), record.width, record.height, line,
        QImage::Format_ARGB32_Premultiplied, [](void *bytes) { delete static_cast<QByteArray *>(bytes); },
        new QByteArray(m_file));
    image.setDevicePixelRatio(record.ratio);
    return image;
}

void SavedImages::write(const QList<SavedImage> &images)
{
    constexpr qint64 maxPixels = maxFileSize - (256 << 10); // the index is far smaller than the rest
    QByteArray index;
    QByteArray pixels;
    QDataStream stream(&index, QIODevice::WriteOnly);
    for (const SavedImage &saved : images) {
        const QImage &image = saved.image;
        if (pixels.size() + image.sizeInBytes() > maxPixels)
            continue;
        const QByteArrayView bytes(image.constBits(), image.sizeInBytes());
        const platform::FileStamp &source = saved.stamp;
        stream << saved.key << source.device << source.inode << source.size << source.changed
               << qint32(saved.density) << qint32(image.width()) << qint32(image.height())
               << qint32(image.devicePixelRatio()) << qint64(pixels.size()) << checksumOf(bytes);
        pixels.append(bytes.data(), bytes.size());
        pixels.resize(aligned(pixels.size()), '\0');
    }

    const quint64 header[] = {magic, quint64(index.size()), checksumOf(index)};
    QByteArray file(reinterpret_cast<const char *>(header), headerSize);
    file += index;
    file.resize(aligned(file.size()), '\0');
    file += pixels;

    const QString path = filePath();
    const QString fresh = path + QStringLiteral(".new");
    // Not flushed to the disk, which may take long: what a power failure leaves half written is seen by the
    // reader.
    if (platform::makeFolder(path.section(QLatin1Char('/'), 0, -2), nullptr)
        && platform::writeInPlace(fresh, file, nullptr))
        std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(path).constData());
}

} // namespace themes
