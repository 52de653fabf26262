// SPDX-License-Identifier: MIT
#pragma once

#include "platform/fileidentity.h"

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QList>

namespace themes {

/// A picture with what it was made from.
struct SavedImage
{
    QString key;
    platform::FileStamp stamp;
    int density = 1;
    QImage image; ///< premultiplied, not null
};

/// The pictures that an earlier start left in the user's cache folder, as pixels: the file is read whole,
/// pictures are views into it, and a usual start needs no decoder. A file that is damaged or not ours holds
/// nothing.
class SavedImages
{
public:
    static SavedImages read();
    /// Writes as many of the pictures as fit the file's limit, the first ones first. Fails silently.
    static void write(const QList<SavedImage> &images);

    /// The saved picture; null when there is none for that state of its source, or its pixels are damaged.
    QImage find(const QString &key, const platform::FileStamp &stamp, int density) const;

private:
    struct Record
    {
        platform::FileStamp stamp;
        qint32 density, width, height, ratio;
        qint64 offset; ///< of the first pixel, counted from that of the first picture
        quint64 checksum;
    };
    QByteArray m_file;
    qsizetype m_pixels = 0; ///< where the first picture's begin
    QHash<QString, Record> m_records;
};

} // namespace themes
