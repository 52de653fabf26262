// SPDX-License-Identifier: MIT
#include "model/settingsjson.h"
#include "model/uuidtext.h"
#include "platform/uri.h"

#include <algorithm>
#include <array>
#include <string>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

namespace model {

namespace {

enum class Type { Text, Truth, Uuid, Address, Texts, Tiles, Links };

struct Field
{
    QLatin1String key;
    Type type;
};

// The keys of the three records, one after another.
enum FieldIndex {
    CurrentTheme,
    AvailableThemes,
    ShowsDate,
    Direction,
    AppIcon,
    TileItems,
    TileId,
    IconName,
    TileName,
    TileDirectory,
    ShowsScratchpad,
    ScratchpadText,
    TileMenuItems,
    LinkId,
    ItemString,
    ItemName,
    FieldCount,
    NoField = FieldCount, // the value of a key that is not ours
};

constexpr std::array<Field, FieldCount> fields = {{
    {QLatin1String("currentTheme"), Type::Text},
    {QLatin1String("availableThemes"), Type::Texts},
    {QLatin1String("showsDate"), Type::Truth},
    {QLatin1String("direction"), Type::Text},
    {QLatin1String("appIcon"), Type::Text},
    {QLatin1String("tileItems"), Type::Tiles},
    {QLatin1String("id"), Type::Uuid},
    {QLatin1String("iconName"), Type::Text},
    {QLatin1String("tileName"), Type::Text},
    {QLatin1String("tileDirectory"), Type::Address},
    {QLatin1String("showsScratchpad"), Type::Truth},
    {QLatin1String("scratchpadText"), Type::Text},
    {QLatin1String("tileMenuItems"), Type::Links},
    {QLatin1String("id"), Type::Uuid},
    {QLatin1String("itemString"), Type::Text},
    {QLatin1String("itemName"), Type::Text},
}};

/// Where each record's keys begin; the records stand inside one another in this order.
constexpr std::array<int, 4> firstField = {CurrentTheme, TileId, LinkId, FieldCount};

QString nameOf(Type type)
{
    switch (type) {
    case Type::Text:
        return QStringLiteral("a string");
    case Type::Truth:
        return QStringLiteral("true or false");
    case Type::Uuid:
        return QStringLiteral("a UUID");
    case Type::Address:
        return QStringLiteral("a URL");
    default:
        return QStringLiteral("an array");
    }
}

/// Takes the parser's events and fills the records, without a tree of values between.
class RecordReader
{
public:
    using Ch = char;

    explicit RecordReader(rapidjson::InsituStringStream &stream)
        : m_stream(stream)
    {
    }

    SettingsData takeData() { return std::move(m_data); }
    /// Why a value was refused.
    const QString &problem() const { return m_problem; }
    /// Where that value begins: the parser only tells where it was when it had read it.
    qsizetype problemOffset(QByteArrayView bytes) const
    {
        qsizetype offset = m_end;
        while (offset < bytes.size() && QByteArrayView(" \t\r\n:,").contains(bytes[offset]))
            ++offset;
        return offset;
    }

    bool Null() { return value(std::nullopt); }
    bool Bool(bool truth)
    {
        if (!isOurs())
            return passed();
        if (!expects(Type::Truth))
            return wrongType();
        m_truths[size_t(field())] = truth;
        return passed();
    }
    bool RawNumber(const char *, rapidjson::SizeType, bool) { return value(std::nullopt); }
    // Numbers come as the text above; these are never called.
    bool Int(int) { return value(std::nullopt); }
    bool Uint(unsigned) { return value(std::nullopt); }
    bool Int64(int64_t) { return value(std::nullopt); }
    bool Uint64(uint64_t) { return value(std::nullopt); }
    bool Double(double) { return value(std::nullopt); }

    bool String(const char *text, rapidjson::SizeType size, bool)
    {
        const QByteArrayView bytes(text, size);
        return isText(bytes) && value(bytes);
    }

    bool Key(const char *text, rapidjson::SizeType size, bool)
    {
        const QByteArrayView name(text, size);
        if (!isText(name))
            return false;
        if (m_ignoredDepth > 0)
            return passed();
        int &current = m_current[size_t(m_level)];
        current = NoField;
        for (int i = firstField[size_t(m_level)]; i < firstField[size_t(m_level) + 1]; ++i) {
            // The first of two equal keys counts.
            if (!(m_seen & 1u << i)
                && name == QByteArrayView(fields[size_t(i)].key.data(), fields[size_t(i)].key.size())) {
                m_seen |= 1u << i;
                current = i;
                break;
            }
        }
        return passed();
    }

    bool StartObject()
    {
        if (!enter())
            return false;
        if (m_level >= 0 && (!isOurs() || m_ignoredDepth > 0)) {
            ++m_ignoredDepth;
            return passed();
        }
        if (m_level >= 0 && !(m_inArray && (expects(Type::Tiles) || expects(Type::Links))))
            return wrongType();
        ++m_level;
        m_inArray = false;
        for (int i = firstField[size_t(m_level)]; i < firstField[size_t(m_level) + 1]; ++i)
            m_seen &= ~(1u << i);
        return passed();
    }

    bool EndObject(rapidjson::SizeType)
    {
        --m_depth;
        if (m_ignoredDepth > 0) {
            --m_ignoredDepth;
            return passed();
        }
        for (int i = firstField[size_t(m_level)]; i < firstField[size_t(m_level) + 1]; ++i) {
            if (!(m_seen & 1u << i)) {
                m_current[size_t(m_level)] = i;
                return fails(QStringLiteral("is missing"));
            }
        }
        finishRecord();
        --m_level;
        m_inArray = true;
        return passed();
    }

    bool StartArray()
    {
        if (!enter())
            return false;
        if (m_level >= 0 && (!isOurs() || m_ignoredDepth > 0)) {
            ++m_ignoredDepth;
            return passed();
        }
        if (m_level < 0 || m_inArray || fields[size_t(field())].type < Type::Texts)
            return wrongType();
        m_inArray = true;
        return passed();
    }

    bool EndArray(rapidjson::SizeType)
    {
        --m_depth;
        if (m_ignoredDepth > 0)
            --m_ignoredDepth;
        else
            m_inArray = false;
        return passed();
    }

private:
    static constexpr int maxDepth = 512;

    int field() const { return m_current[size_t(m_level)]; }
    /// Whether the value that comes belongs to a record.
    bool isOurs() const { return m_ignoredDepth == 0 && (m_level < 0 || field() != NoField); }
    bool expects(Type type) const { return m_level >= 0 && fields[size_t(field())].type == type; }

    bool passed()
    {
        m_end = qsizetype(m_stream.Tell());
        return true;
    }

    /// The parser checks neither raw bytes nor escapes that name half a surrogate pair; both end here.
    bool isText(QByteArrayView bytes)
    {
        if (bytes.isValidUtf8())
            return true;
        m_problem = QStringLiteral("a string is not valid Unicode");
        return false;
    }

    bool enter()
    {
        if (++m_depth <= maxDepth)
            return true;
        m_problem = QStringLiteral("it is nested too deeply");
        return false;
    }

    /// A string, or a value that is never right.
    bool value(std::optional<QByteArrayView> text)
    {
        if (!isOurs())
            return passed();
        if (!text || m_level < 0)
            return wrongType();
        const Type type = fields[size_t(field())].type;
        if (m_inArray) {
            if (type != Type::Texts)
                return wrongType();
            m_data.availableThemes.append(QString::fromUtf8(*text));
            return passed();
        }
        switch (type) {
        case Type::Uuid:
            if (const auto id = uuidFromText(*text)) {
                m_ids[size_t(m_level)] = *id;
                return passed();
            }
            return wrongType();
        case Type::Address:
        case Type::Text:
            m_texts[size_t(field())] = QString::fromUtf8(*text);
            return type == Type::Text || platform::parseUriReference(m_texts[size_t(field())]) ? passed()
                                                                                               : wrongType();
        default:
            return wrongType();
        }
    }

    void finishRecord()
    {
        const auto text = [this](FieldIndex index) { return std::move(m_texts[size_t(index)]); };
        switch (m_level) {
        case 2:
            m_links.append({m_ids[2], text(ItemString), text(ItemName)});
            break;
        case 1:
            m_data.tileItems.append({m_ids[1], text(IconName), text(TileName), text(TileDirectory),
                                     m_truths[ShowsScratchpad], text(ScratchpadText), std::move(m_links),
                                     false});
            m_links = {};
            break;
        default:
            m_data.currentTheme = text(CurrentTheme);
            m_data.showsDate = m_truths[ShowsDate];
            m_data.direction = text(Direction);
            m_data.appIcon = text(AppIcon);
        }
    }

    bool wrongType()
    {
        if (m_level < 0) {
            m_problem = QStringLiteral("it is not an object");
            return false;
        }
        const Type type = fields[size_t(field())].type;
        if (!m_inArray)
            return fails(QStringLiteral("is not ") + nameOf(type));
        return fails(type == Type::Texts ? QStringLiteral("is not a string")
                                         : QStringLiteral("is not an object"));
    }

    bool fails(const QString &what)
    {
        QString path;
        for (int level = 0; level <= m_level; ++level) {
            const Field &step = fields[size_t(m_current[size_t(level)])];
            if (level > 0)
                path += u'.';
            path += step.key;
            if (level == m_level && !m_inArray)
                break;
            const qsizetype index = step.type == Type::Texts ? m_data.availableThemes.size()
                : step.type == Type::Tiles                   ? m_data.tileItems.size()
                                                             : m_links.size();
            path += u'[' + QString::number(index) + u']';
        }
        m_problem = QStringLiteral("“%1” %2").arg(path, what);
        return false;
    }

    rapidjson::InsituStringStream &m_stream;
    QString m_problem;
    qsizetype m_end = 0; // of the last token that was right
    int m_depth = 0;
    int m_ignoredDepth = 0; // of the objects and arrays open inside a value that is not ours
    int m_level = -1; // of the record being read
    bool m_inArray = false; // of that record's current field
    std::array<int, 3> m_current = {NoField, NoField, NoField}; // by level
    unsigned m_seen = 0; // one bit a field
    // The records being read, by field and level.
    std::array<QString, FieldCount> m_texts;
    std::array<bool, FieldCount> m_truths = {};
    std::array<QUuid, 3> m_ids;
    QList<TileMenuItem> m_links;
    SettingsData m_data = {{}, {}, false, {}, {}, {}};
};

/// The text behind the byte-order mark of UTF-16 or UTF-32 as UTF-8. Nothing when it does not decode.
std::optional<QByteArray> narrowed(QByteArrayView bytes, int unit, bool bigEndian)
{
    if (bytes.size() % unit != 0)
        return std::nullopt;
    QString text;
    for (qsizetype i = unit; i < bytes.size(); i += unit) {
        char32_t c = 0;
        for (int b = 0; b < unit; ++b)
            c = c << 8 | quint8(bytes[bigEndian ? i + b : i + unit - 1 - b]);
        if (unit == 2)
            text += QChar(char16_t(c));
        else if (c > QChar::LastValidCodePoint || QChar::isSurrogate(c))
            return std::nullopt;
        else
            text += QChar::fromUcs4(c);
    }
    if (!text.isValidUtf16())
        return std::nullopt;
    return text.toUtf8();
}

/// Line and column of an offset, both from 1, columns in characters.
QString placeOf(QByteArrayView bytes, qsizetype offset)
{
    const QByteArrayView before = bytes.first(offset);
    const qsizetype line = before.count('\n') + 1;
    const QByteArrayView row = before.sliced(before.lastIndexOf('\n') + 1);
    const auto column = 1 + std::count_if(row.begin(), row.end(), [](char c) { return (c & 0xC0) != 0x80; });
    return QStringLiteral("line %1, column %2").arg(line).arg(column);
}

} // namespace

std::optional<SettingsData> settingsFromJson(QByteArrayView bytes, platform::Error *error)
{
    const auto failed = [&](int code, const QString &problem, qsizetype offset) {
        if (error) {
            *error = {QStringLiteral("JSON"), code,
                      QStringLiteral("The settings file is not valid: %1 (%2).")
                          .arg(problem, placeOf(bytes, offset)),
                      QString()};
        }
        return std::nullopt;
    };

    constexpr QByteArrayView utf32le("\xFF\xFE\0\0", 4);
    constexpr QByteArrayView utf32be("\0\0\xFE\xFF", 4);
    std::optional<QByteArray> narrow;
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        bytes = bytes.sliced(3);
    } else if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF") || bytes.startsWith(utf32be)) {
        const bool wide = bytes.startsWith(utf32le) || bytes.startsWith(utf32be);
        narrow = narrowed(bytes, wide ? 4 : 2, quint8(bytes[0]) != 0xFF);
        if (!narrow)
            return failed(rapidjson::kParseErrorStringInvalidEncoding,
                          QStringLiteral("it is not valid Unicode"), 0);
        bytes = *narrow;
    }

    QByteArray scratch = bytes.toByteArray(); // the parser decodes strings where they stand
    rapidjson::InsituStringStream stream(scratch.data());
    RecordReader records(stream);
    rapidjson::Reader reader;
    // Iterative: no depth of nesting can exhaust the stack.
    constexpr unsigned flags =
        rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, records);
    if (result.Code() == rapidjson::kParseErrorTermination)
        return failed(result.Code(), records.problem(), records.problemOffset(bytes));
    if (!result) {
        QString problem = QString::fromLatin1(rapidjson::GetParseError_En(result.Code()));
        problem.chop(problem.endsWith(u'.') ? 1 : 0);
        return failed(result.Code(), problem, qMin(qsizetype(result.Offset()), bytes.size()));
    }
    // The parser takes a NUL for the end of the text.
    if (const qsizetype end = qsizetype(stream.Tell()); end < bytes.size())
        return failed(rapidjson::kParseErrorDocumentRootNotSingular,
                      QStringLiteral("text follows the root object"), end);
    return records.takeData();
}

} // namespace model
