// SPDX-License-Identifier: MIT
#include "links/linkimport.h"
#include "model/settingsstore.h"
#include "platform/files.h"

#include <QDir>
#include <QTemporaryDir>

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

/// A text file of any bytes: links come from it exactly when the strict decoder takes it, and what was saved
/// is read back the same.
extern "C" int LLVMFuzzerTestOneInput(const char *data, std::size_t size)
{
    static const QTemporaryDir dir;
    static const int silent = ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO); // the reports
    Q_UNUSED(silent)
    QDir(dir.path()).mkpath(QStringLiteral("Documents"));
    const QString path = dir.filePath(QStringLiteral("text.txt"));
    const QByteArrayView bytes(data, qsizetype(size));
    if (!platform::writeInPlace(path, bytes, nullptr))
        std::abort();
    Config config(dir.filePath(QStringLiteral("Documents")), dir.filePath(QStringLiteral("state")));
    TileItem tile;
    tile.tileDirectory = QStringLiteral("file:///tile");
    config.setTileItems({tile});
    links::importLinksFromPath(config, tile.id, path);

    const bool readable = platform::decodeUtf8(bytes, nullptr).has_value();
    if (!readable && !config.tileItems().constFirst().tileMenuItems.isEmpty())
        std::abort();
    if (readable) {
        Config next(config.documentDirectory(), config.stateDirectory());
        model::loadSettings(next);
        if (next.tileItems() != config.tileItems())
            std::abort();
    }
    return 0;
}
