// SPDX-License-Identifier: MIT
// Any bytes as a picture of a theme. What is drawn has a size that a theme may have, whatever the header
// says.
#include "themes/imagedecoder.h"
#include "themes/svgimage.h"

#include <QGuiApplication>

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false"); // the decoders' complaints
    static const QGuiApplication application(*argc, *argv); // for the texts of drawings
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const char *data, std::size_t size)
{
    const int density = 1 + int(size % themes::maxDensity);
    const QImage image = themes::decodeImage(QByteArray(data, qsizetype(size)), density);
    if (image.width() > themes::maxImageSide || image.height() > themes::maxImageSide
        || (!image.isNull() && image.format() != QImage::Format_ARGB32_Premultiplied))
        std::abort();
    return 0;
}
