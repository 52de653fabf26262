// SPDX-License-Identifier: MIT
// Any bytes as a tile's notes: looking at them changes none, and a letter typed behind them is all that an
// edit changes, but for the ends of lines, which become those of the first. What is no text stays as it is.
#include "model/config.h"
#include "platform/files.h"
#include "strip/scratchpadview.h"

#include <QApplication>
#include <QFile>
#include <QPlainTextEdit>
#include <QShowEvent>
#include <QTemporaryDir>

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Otherwise the toolkit asks every font of the system about each rare script.
    static const QTemporaryDir fonts;
    platform::writeInPlace(fonts.filePath(QStringLiteral("f")),
                           "<fontconfig><dir>/usr/share/fonts/truetype/dejavu</dir></fontconfig>", nullptr);
    qputenv("FONTCONFIG_FILE", QFile::encodeName(fonts.filePath(QStringLiteral("f"))));
    static const QApplication application(*argc, *argv);
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO); // the reports
    return 0;
}

namespace {

QString withoutLineEnds(QByteArrayView notes)
{
    QString text = QString::fromUtf8(notes);
    for (const QChar end :
         {QChar(u'\r'), QChar(u'\n'), QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)})
        text.remove(end);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char *data, std::size_t size)
{
    static const QTemporaryDir folder;
    static Config config(folder.path(), folder.path());
    const QString path = folder.filePath(QStringLiteral("Notes.txt"));
    const QByteArray bytes(data, qsizetype(size));
    TileItem tile;
    tile.tileDirectory = QStringLiteral("file://") + folder.path();
    config.setTileItems({tile});
    platform::writeInPlace(path, bytes, nullptr);
    ScratchpadView pad(config, tile.id, nullptr);
    auto *editor = pad.findChild<QPlainTextEdit *>();
    QShowEvent shown;
    QCoreApplication::sendEvent(&pad, &shown);
    if (platform::readWholeFile(path, nullptr) != bytes)
        std::abort();
    if (!platform::decodeUtf8(bytes, nullptr))
        return 0;
    QTextCursor cursor(editor->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QStringLiteral("x"));
    const QByteArray edited = platform::readWholeFile(path, nullptr).value_or(QByteArray());
    if (withoutLineEnds(edited) != withoutLineEnds(bytes) + u'x')
        std::abort();
    return 0;
}
