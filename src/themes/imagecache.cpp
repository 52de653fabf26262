// SPDX-License-Identifier: MIT
#include "themes/imagecache.h"

#include "themes/savedimages.h"

#include <QCache>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include <time.h>

namespace themes {

namespace {

constexpr qsizetype roomInBytes = 32 << 20;

struct Entry
{
    SavedImage saved;
    bool isSettled;
    quint64 lastUse;
};

struct Cache
{
    QCache<QString, Entry> entries{roomInBytes};
    std::optional<SavedImages> fromEarlierStarts; // read at the first use
    quint64 uses = 0;
    bool hasNew = false;
};

Cache &cache()
{
    static Cache instance;
    return instance;
}

} // namespace

QImage cachedImage(const QString &key, const platform::FileStamp &stamp, int density,
                   const std::function<QImage()> &make)
{
    Cache &kept = cache();
    if (Entry *known = kept.entries.object(key);
        known && known->isSettled && known->saved.density == density && known->saved.stamp == stamp) {
        known->lastUse = ++kept.uses;
        return known->saved.image;
    }
    if (!kept.fromEarlierStarts)
        kept.fromEarlierStarts = SavedImages::read();
    const bool settled = stamp.isSettled();
    QImage image = kept.fromEarlierStarts->find(key, stamp, density);
    if (image.isNull()) {
        image = make();
        kept.hasNew |= settled && !image.isNull();
    }
    const qsizetype cost = std::clamp<qsizetype>(image.sizeInBytes(), 256, roomInBytes);
    kept.entries.insert(key, new Entry{{key, stamp, density, image}, settled, ++kept.uses}, cost);
    return image;
}

void saveImageCache()
{
    Cache &kept = cache();
    if (!kept.hasNew)
        return;
    kept.hasNew = false;
    QList<const Entry *> entries;
    for (const QString &key : kept.entries.keys()) {
        const Entry *entry = kept.entries.object(key);
        if (entry->isSettled && !entry->saved.image.isNull())
            entries += entry;
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry *a, const Entry *b) { return a->lastUse > b->lastUse; });
    QList<SavedImage> images;
    for (const Entry *entry : std::as_const(entries))
        images += entry->saved;
    SavedImages::write(images);
}

void clearImageCache()
{
    cache().entries.clear();
    cache().fromEarlierStarts.reset();
    cache().hasNew = false;
}

} // namespace themes
