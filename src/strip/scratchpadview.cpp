// SPDX-License-Identifier: MIT
#include "strip/scratchpadview.h"

#include "model/config.h"
#include "model/tiles.h"
#include "platform/files.h"
#include "platform/localized.h"
#include "platform/report.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

constexpr int padWidth = 256; // points
constexpr int padHeight = 128;
constexpr int barHeight = 8;
constexpr int textPadding = 6;
constexpr int cornerRadius = 6;
constexpr int shadowRadius = 2;
constexpr qreal shadowOpacity = 0.33;
const QColor barColour = QColor::fromRgbF(1.0f, 0.9f, 0.3f);
const QColor padColour = QColor::fromRgbF(1.0f, 1.0f, 0.6f);
const QColor inkColour(0x1c, 0x1c, 0x1e);

QString lineEndOf(const QString &text)
{
    const qsizetype at = text.indexOf(QLatin1Char('\n'));
    if (at > 0 && text.at(at - 1) == QLatin1Char('\r'))
        return QStringLiteral("\r\n");
    return at < 0 && text.contains(QLatin1Char('\r')) ? QStringLiteral("\r") : QStringLiteral("\n");
}

/// Copies what nobody has seen to a name of its own.
bool keepOther(const QString &path, platform::Error *error)
{
    QString copy = path + QLatin1Char('~');
    while (platform::itemExists(copy))
        copy += QLatin1Char('~');
    return platform::copyFile(path, copy, error);
}

} // namespace

ScratchpadView::ScratchpadView(Config &config, const QUuid &tileId, QWidget *parent)
    : QWidget(parent)
    , m_config(config)
    , m_tileId(tileId)
    , m_editor(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("ScratchpadView"));
    m_editor->setObjectName(QStringLiteral("Notes"));
    m_editor->setAccessibleName(platform::localized("Notes"));
    m_editor->setFrameShape(QFrame::NoFrame);
    m_editor->setTabChangesFocus(true);
    setFocusProxy(m_editor);
    m_editor->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_editor->viewport()->setAutoFillBackground(false);
    QPalette colours = m_editor->palette(); // dark ink on the yellow pad, in a dark desktop too
    colours.setColor(QPalette::Base, Qt::transparent);
    colours.setColor(QPalette::Text, inkColour);
    m_editor->setPalette(colours);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(shadowRadius + textPadding, shadowRadius + barHeight + textPadding,
                               shadowRadius + textPadding, shadowRadius + textPadding);
    column->addWidget(m_editor);
    setMinimumWidth(padWidth + 2 * shadowRadius);
    setFixedHeight(padHeight + 2 * shadowRadius);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(m_editor->document(), &QTextDocument::contentsChanged, this, &ScratchpadView::takeEdit);
}

QSize ScratchpadView::sizeHint() const
{
    return {padWidth + 2 * shadowRadius, padHeight + 2 * shadowRadius};
}

void ScratchpadView::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        load();
}

QString ScratchpadView::notesPath() const
{
    const TileItem *tile = m_config.tile(m_tileId);
    return tile ? model::tileFilePath(*tile, platform::localizedFileName("Notes") + QLatin1String(".txt"))
                : QString();
}

void ScratchpadView::load()
{
    const QString path = notesPath();
    if (path.isEmpty())
        return;
    m_isOther = false;
    platform::Error error;
    if (!platform::itemExists(path)) {
        // Only the file: the pad stays empty this time and shows the word the next.
        if (!platform::writeAtomically(path, platform::localizedFileName("Notes").toUtf8(), &error))
            platform::report(error.description());
        return;
    }
    const std::optional<QByteArray> bytes = platform::readWholeFile(path, &error);
    const std::optional<QString> text = bytes ? platform::decodeUtf8(*bytes, &error) : std::nullopt;
    m_isOther = !text;
    if (!text) {
        platform::report(error.description());
        return;
    }
    m_mark = bytes->startsWith("\xEF\xBB\xBF") ? QString(QChar::ByteOrderMark) : QString();
    m_lineEnd = lineEndOf(*text);
    if (m_mark + *text == m_text)
        return;
    m_text = m_mark + *text;
    const QSignalBlocker quiet(m_editor->document());
    m_editor->setPlainText(*text);
    save();
}

void ScratchpadView::takeEdit()
{
    // Not toPlainText(): it turns no-break spaces into blanks.
    QString text = m_mark + m_editor->document()->toRawText();
    text.replace(QChar::ParagraphSeparator, m_lineEnd);
    text.replace(QChar::LineSeparator, m_lineEnd);
    if (text == m_text)
        return;
    m_text = text;
    save();
}

void ScratchpadView::save()
{
    const QString path = notesPath();
    if (path.isEmpty())
        return;
    platform::Error error;
    if (m_isOther && platform::itemExists(path) && !keepOther(path, &error)) {
        platform::report(error.description());
        return;
    }
    m_isOther = false;
    if (!platform::writeAtomically(path, m_text.toUtf8(), &error))
        platform::report(error.description());
}

void ScratchpadView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF pad = QRectF(rect()).adjusted(shadowRadius, shadowRadius, -shadowRadius, -shadowRadius);
    QPainterPath shape;
    shape.addRoundedRect(pad, cornerRadius, cornerRadius);
    painter.setPen(Qt::NoPen);
    for (int ring = shadowRadius; ring >= 1; --ring) {
        painter.setBrush(QColor::fromRgbF(0, 0, 0, float(shadowOpacity / (2 * shadowRadius))));
        painter.drawRoundedRect(pad.adjusted(-ring, -ring, ring, ring), cornerRadius + ring,
                                cornerRadius + ring);
    }
    painter.setClipPath(shape);
    painter.fillRect(pad, padColour);
    painter.fillRect(QRectF(pad.left(), pad.top(), pad.width(), barHeight), barColour);
}
