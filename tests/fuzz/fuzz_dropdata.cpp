// SPDX-License-Identifier: MIT
// Any bytes as what a drag brings: parts behind a byte each that says under which format.
#include "links/linkdrop.h"

#include <QMimeData>

#include <array>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    constexpr std::array formats = {"text/uri-list",  "text/plain",    "text/plain;charset=utf-8",
                                    "text/x-moz-url", "_NETSCAPE_URL", "text/html"};
    static Config config(QStringLiteral("/no/such/folder"), QStringLiteral("/no/such/folder"));
    const QByteArray input(reinterpret_cast<const char *>(bytes), qsizetype(size));
    QMimeData data;
    for (const QByteArray &part : input.split('\xff')) {
        if (!part.isEmpty())
            data.setData(QLatin1String(formats.at(uchar(part.front()) % formats.size())), part.sliced(1));
    }
    // The tile is not there: all that is read is read, and nothing is written.
    const std::optional<links::DroppedItem> item = links::droppedItem(data);
    if (item && item->kind == links::DroppedItem::Kind::File)
        links::receiveDroppedFile(config, item->bytes, QUuid());
    else if (item)
        links::receiveDroppedText(config, item->bytes, QUuid());
    return 0;
}
