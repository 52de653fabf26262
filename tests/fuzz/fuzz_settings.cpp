// SPDX-License-Identifier: MIT
// Any bytes may stand where the settings file is: they load or are refused with a reason, and what loads is
// written as a text that loads as the same records. What loads is valid JSON for another parser, too.
#include "model/settingsjson.h"
#include "model/uuidtext.h"

#include <QJsonDocument>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    platform::Error error;
    const QByteArrayView bytes(data, qsizetype(size));
    const auto id = model::uuidFromText(bytes);
    if (id && model::uuidText(*id).toLatin1() != QByteArray(bytes.data(), bytes.size()).toUpper())
        std::abort();
    const auto records = model::settingsFromJson(bytes, &error);
    if (!records) {
        if (error.description().isEmpty() || error.description().contains(u'\n'))
            std::abort();
        return 0;
    }
    QJsonParseError other;
    QJsonDocument::fromJson(bytes.toByteArray(), &other);
    const bool isUtf8 = bytes.front() == '{';
    if (isUtf8 && other.error != QJsonParseError::NoError && other.error != QJsonParseError::IllegalNumber)
        std::abort();
    const QByteArray text = model::settingsToJson(*records);
    const auto again = model::settingsFromJson(text, &error);
    if (!again || again->tileItems != records->tileItems || model::settingsToJson(*again) != text)
        std::abort();
    return 0;
}
