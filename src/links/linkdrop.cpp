// SPDX-License-Identifier: MIT
#include "links/linkdrop.h"

#include "links/linktext.h"
#include "links/tilealias.h"

#include <QDropEvent>
#include <QMimeData>
#include <QStringDecoder>
#include <QSysInfo>

#include <algorithm>
#include <array>

namespace links {

namespace {

// Best first. The last two are what browsers offer: an address, then its title on a line of its own.
constexpr std::array textFormats = {"text/plain;charset=utf-8", "text/plain", "text/x-moz-url",
                                    "_NETSCAPE_URL"};
constexpr const char *listFormat = "text/uri-list";

/// The name under which the format is offered; empty when it is not. `QMimeData` itself makes text out of a
/// list of addresses, and must not.
QString offered(const QMimeData &data, const char *format)
{
    for (const QString &name : data.formats()) {
        if (name.compare(QLatin1String(format), Qt::CaseInsensitive) == 0)
            return name;
    }
    return {};
}

QByteArray dataOf(const QMimeData &data, const char *format)
{
    const QString name = offered(data, format);
    return name.isEmpty() ? QByteArray() : data.data(name);
}

/// The lines of a list of addresses without its comments.
QList<QByteArray> addressesOf(const QMimeData &data)
{
    QList<QByteArray> addresses;
    for (const QByteArray &line : dataOf(data, listFormat).split('\n')) {
        QByteArray address = line.trimmed();
        if (address.endsWith('\0'))
            address.chop(1);
        if (!address.isEmpty() && !address.startsWith('#'))
            addresses.append(address);
    }
    return addresses;
}

/// The first line of what browsers offer, some of them in UTF-16.
QByteArray browserAddress(const QByteArray &bytes)
{
    const bool isUtf16 = bytes.size() > 1 && bytes.size() % 2 == 0 && bytes.at(1) == '\0';
    const QByteArray text =
        isUtf16 ? QString(QStringDecoder(QStringDecoder::Utf16LE).decode(bytes)).toUtf8() : bytes;
    return text.split('\n').constFirst().trimmed();
}

std::optional<QByteArray> textOf(const QMimeData &data)
{
    for (const char *format : textFormats) {
        if (offered(data, format).isEmpty())
            continue;
        QByteArray bytes = dataOf(data, format);
        if (!QByteArrayView(format).startsWith("text/plain"))
            return browserAddress(bytes);
        if (bytes.endsWith('\0'))
            bytes.chop(1);
        return bytes;
    }
    return std::nullopt;
}

bool isFileAddress(const QByteArray &address)
{
    return address.left(5).toLower() == "file:";
}

bool isThisMachine(const QByteArray &host)
{
    const QByteArray name = host.toLower();
    return name.isEmpty() || name == "localhost" || name == QSysInfo::machineHostName().toLower().toUtf8();
}

/// The absolute path in a file address of this machine, in bytes and without a slash at its end.
std::optional<QByteArray> pathOf(const QByteArray &address)
{
    if (!isFileAddress(address))
        return std::nullopt;
    QByteArray rest = address.sliced(5).split('#').constFirst().split('?').constFirst();
    if (rest.startsWith("//")) {
        const qsizetype slash = rest.indexOf('/', 2);
        if (slash < 0 || !isThisMachine(rest.sliced(2, slash - 2)))
            return std::nullopt;
        rest = rest.sliced(slash);
    }
    QByteArray path = QByteArray::fromPercentEncoding(rest);
    if (!path.startsWith('/') || path.contains('\0'))
        return std::nullopt;
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

/// The ways in which text names a dropped file again.
QList<QByteArray> formsOf(const QByteArray &address)
{
    QList<QByteArray> forms = {address, QByteArray::fromPercentEncoding(address)};
    if (const std::optional<QByteArray> path = pathOf(address)) {
        forms += {*path, "file://" + *path, "file:" + *path, path->sliced(path->lastIndexOf('/') + 1)};
    }
    return forms;
}

bool isJoint(char c)
{
    return QByteArrayView(" \t\r\n,;'\"").contains(c);
}

/// True when the text consists of the forms and what may stand between them, in any order.
bool consistsOf(QByteArrayView text, const QList<QByteArray> &longestFirst)
{
    while (true) {
        while (!text.isEmpty() && isJoint(text.front()))
            text = text.sliced(1);
        if (text.isEmpty())
            return true;
        const auto fits = [&text](const QByteArray &form) {
            return text.startsWith(form) && (text.size() == form.size() || isJoint(text[form.size()]));
        };
        const auto form = std::find_if(longestFirst.cbegin(), longestFirst.cend(), fits);
        if (form == longestFirst.cend())
            return false;
        text = text.sliced(form->size());
    }
}

bool onlyRepeats(const QByteArray &text, const QList<QByteArray> &addresses)
{
    QList<QByteArray> forms;
    for (const QByteArray &address : addresses) {
        for (QByteArray form : formsOf(address)) {
            forms.append(form);
            if (form.size() > 1 && form.endsWith('/'))
                forms.append(form.chopped(1));
        }
    }
    forms.removeIf([](const QByteArray &form) { return form.isEmpty(); });
    std::sort(forms.begin(), forms.end(),
              [](const QByteArray &a, const QByteArray &b) { return a.size() > b.size(); });
    return consistsOf(text, forms) || consistsOf(QByteArray::fromPercentEncoding(text), forms);
}

} // namespace

std::optional<DroppedItem> droppedItem(const QMimeData &data)
{
    const QList<QByteArray> addresses = addressesOf(data);
    const std::optional<QByteArray> text = textOf(data);
    if (text && (addresses.isEmpty() || !onlyRepeats(*text, addresses)))
        return DroppedItem{DroppedItem::Kind::Text, *text};
    if (addresses.isEmpty())
        return std::nullopt;
    const bool isFile = isFileAddress(addresses.constFirst());
    return DroppedItem{isFile ? DroppedItem::Kind::File : DroppedItem::Kind::Text, addresses.constFirst()};
}

void answerLinkDrag(QDropEvent &event)
{
    const QMimeData &data = *event.mimeData();
    const bool mayHoldText = std::any_of(textFormats.begin(), textFormats.end(), [&data](const char *format) {
        return !offered(data, format).isEmpty();
    });
    event.setDropAction(Qt::CopyAction);
    event.setAccepted(mayHoldText || !offered(data, listFormat).isEmpty());
}

bool handleLinkDrop(Config &config, const QMimeData &data, const QUuid &tileId)
{
    const std::optional<DroppedItem> item = droppedItem(data);
    if (!item)
        return false;
    const auto receive = item->kind == DroppedItem::Kind::Text ? receiveDroppedText : receiveDroppedFile;
    QMetaObject::invokeMethod(
        &config, [&config, receive, bytes = item->bytes, tileId] { receive(config, bytes, tileId); },
        Qt::QueuedConnection);
    return true;
}

void receiveDroppedText(Config &config, const QByteArray &item, const QUuid &tileId)
{
    if (!item.isEmpty() && item.isValidUtf8())
        appendLinks(config, tileId, linksFromText(item));
}

void receiveDroppedFile(Config &config, const QByteArray &item, const QUuid &tileId)
{
    if (const std::optional<QByteArray> path = pathOf(item))
        linkFile(config, tileId, *path);
}

} // namespace links
