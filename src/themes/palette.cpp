// SPDX-License-Identifier: MIT
#include "themes/palette.h"

namespace themes {

QColor paletteColor(QStringView word)
{
    struct Entry
    {
        QStringView word;
        float red, green, blue; // sRGB
    };
    static constexpr Entry entries[] = {
        {u"green", 0.47f, 0.75f, 0.13f}, {u"yellow", 1.0f, 0.78f, 0.17f}, {u"orange", 1.0f, 0.4f, 0.12f},
        {u"red", 0.78f, 0.06f, 0.18f},   {u"violet", 0.68f, 0.1f, 0.67f}, {u"blue", 0.0f, 0.64f, 0.88f},
    };
    for (const Entry &entry : entries) {
        if (entry.word == word)
            return QColor::fromRgbF(entry.red, entry.green, entry.blue);
    }
    return QColor::fromRgbF(1.0f, 0.4f, 0.12f);
}

} // namespace themes
