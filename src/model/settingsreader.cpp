// SPDX-License-Identifier: MIT
#include "model/jsonnumbers.h"
#include "model/settingsjson.h"
#include "model/uuidtext.h"
#include "platform/uri.h"

#include <algorithm>
#include <utility>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

namespace model {

namespace {

enum class Type { Text, Truth, Uuid, Address, Texts, Tiles, Links };

struct Field
{
    QByteArrayView key;
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
    NoField = -1, // the value of a key that is not ours
};

constexpr Field fields[FieldCount] = {
    {"currentTheme", Type::Text},
    {"availableThemes", Type::Texts},
    {"showsDate", Type::Truth},
    {"direction", Type::Text},
    {"appIcon", Type::Text},
    {"tileItems", Type::Tiles},
    {"id", Type::Uuid},
    {"iconName", Type::Text},
    {"tileName", Type::Text},
    {"tileDirectory", Type::Address},
    {"showsScratchpad", Type::Truth},
    {"scratchpadText", Type::Text},
    {"tileMenuItems", Type::Links},
    {"id", Type::Uuid},
    {"itemString", Type::Text},
    {"itemName", Type::Text},
};

/// Where each record's keys begin; the records stand inside one another in this order.
constexpr int firstField[] = {CurrentTheme, TileId, LinkId, FieldCount};

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
class RecordReader : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, RecordReader>
{
public:
    explicit RecordReader(rapidjson::InsituStringStream &stream)
        : m_stream(stream)
    {
    }

    SettingsData takeData() { return std::move(m_data); }
    /// Why a value was refused, and where it begins.
    const QString &problem() const { return m_problem; }
    qsizetype problemOffset() const { return m_problemOffset; }

    bool Null() { return isIgnored() || wrongType(4); }
    bool RawNumber(const char *, rapidjson::SizeType, bool) { return isIgnored() || wrongType(); }

    bool Bool(bool truth)
    {
        if (isIgnored())
            return true;
        if (!expects(Type::Truth))
            return wrongType(truth ? 4 : 5);
        m_truths[field()] = truth;
        return true;
    }

    bool String(const char *characters, rapidjson::SizeType size, bool)
    {
        const QByteArrayView text(characters, size);
        if (!isUnicode(text) || isIgnored())
            return m_problem.isEmpty();
        if (m_inArray && expects(Type::Texts)) {
            m_data.availableThemes.append(QString::fromUtf8(text));
            return true;
        }
        if (m_level < 0 || m_inArray)
            return wrongType();
        if (expects(Type::Uuid)) {
            const auto id = uuidFromText(text);
            m_ids[m_level] = id.value_or(QUuid());
            return id || wrongType();
        }
        m_texts[field()] = QString::fromUtf8(text);
        return expects(Type::Text)
            || (expects(Type::Address) && platform::parseUriReference(m_texts[field()])) || wrongType();
    }

    bool Key(const char *characters, rapidjson::SizeType size, bool)
    {
        const QByteArrayView name(characters, size);
        if (!isUnicode(name))
            return false;
        if (m_ignoredDepth > 0)
            return true;
        m_current[m_level] = NoField;
        for (int i = firstField[m_level]; i < firstField[m_level + 1]; ++i) {
            // The first of two equal keys counts.
            if (!(m_seen & 1u << i) && name == fields[i].key) {
                m_seen |= 1u << i;
                m_current[m_level] = i;
                break;
            }
        }
        return true;
    }

    bool StartObject()
    {
        if (!enter())
            return false;
        if (m_ignoredDepth > 0)
            return true;
        if (m_level >= 0 && !(m_inArray && (expects(Type::Tiles) || expects(Type::Links))))
            return wrongType(1);
        ++m_level;
        m_inArray = false;
        for (int i = firstField[m_level]; i < firstField[m_level + 1]; ++i)
            m_seen &= ~(1u << i);
        return true;
    }

    bool EndObject(rapidjson::SizeType)
    {
        if (leave())
            return true;
        for (int i = firstField[m_level]; i < firstField[m_level + 1]; ++i) {
            if (!(m_seen & 1u << i)) {
                m_current[m_level] = i;
                return fail(fieldPath() + QStringLiteral(" is missing"), 1);
            }
        }
        finishRecord();
        --m_level;
        m_inArray = true;
        return true;
    }

    bool StartArray()
    {
        if (!enter())
            return false;
        if (m_ignoredDepth > 0)
            return true;
        if (m_level < 0 || m_inArray || fields[field()].type < Type::Texts)
            return wrongType(1);
        m_inArray = true;
        return true;
    }

    bool EndArray(rapidjson::SizeType)
    {
        if (!leave())
            m_inArray = false;
        return true;
    }

private:
    static constexpr int maxDepth = 512;

    int field() const { return m_current[m_level]; }
    bool expects(Type type) const { return m_level >= 0 && fields[field()].type == type; }
    /// Whether the value that comes belongs to a key that is not ours.
    bool isIgnored() const { return m_ignoredDepth > 0 || (m_level >= 0 && field() == NoField); }

    bool enter()
    {
        m_ignoredDepth += isIgnored();
        return ++m_depth <= maxDepth || fail(QStringLiteral("it is nested too deeply"), 1);
    }

    /// True when what ends was not ours.
    bool leave()
    {
        --m_depth;
        return m_ignoredDepth > 0 && m_ignoredDepth--;
    }

    /// The parser checks neither raw bytes nor escapes that name half a surrogate pair; both end here.
    bool isUnicode(QByteArrayView text)
    {
        return text.isValidUtf8() || fail(QStringLiteral("a string is not valid Unicode"));
    }

    void finishRecord()
    {
        const auto text = [this](FieldIndex index) { return std::move(m_texts[index]); };
        switch (m_level) {
        case 2:
            m_links.append({m_ids[2], text(ItemString), text(ItemName)});
            break;
        case 1:
            m_data.tileItems.append({m_ids[1], text(IconName), text(TileName), text(TileDirectory),
                                     m_truths[ShowsScratchpad], text(ScratchpadText),
                                     std::exchange(m_links, {}), false});
            break;
        default:
            m_data.currentTheme = text(CurrentTheme);
            m_data.showsDate = m_truths[ShowsDate];
            m_data.direction = text(Direction);
            m_data.appIcon = text(AppIcon);
        }
    }

    /// Refuses the value whose first `back` bytes the parser has already passed.
    bool wrongType(int back = 0)
    {
        if (m_level < 0)
            return fail(QStringLiteral("it is not an object"), back);
        const Type type = fields[field()].type;
        const QString wanted = !m_inArray ? nameOf(type)
            : type == Type::Texts         ? nameOf(Type::Text)
                                          : QStringLiteral("an object");
        return fail(fieldPath() + QStringLiteral(" is not ") + wanted, back);
    }

    bool fail(const QString &problem, int back = 0)
    {
        m_problem = problem;
        m_problemOffset = qsizetype(m_stream.Tell()) - back;
        return false;
    }

    /// “tileItems[0].id”, for the value that is being read.
    QString fieldPath() const
    {
        QString path;
        for (int level = 0; level <= m_level; ++level) {
            const Field &step = fields[m_current[level]];
            path += (level > 0 ? QStringLiteral(".") : QString())
                + QLatin1String(step.key.data(), step.key.size());
            if (level == m_level && !m_inArray)
                break;
            const qsizetype index = step.type == Type::Texts ? m_data.availableThemes.size()
                : step.type == Type::Tiles                   ? m_data.tileItems.size()
                                                             : m_links.size();
            path += u'[' + QString::number(index) + u']';
        }
        return QStringLiteral("“%1”").arg(path);
    }

    rapidjson::InsituStringStream &m_stream;
    QString m_problem;
    qsizetype m_problemOffset = 0;
    int m_depth = 0;
    int m_ignoredDepth = 0; // of the objects and arrays open inside a value that is not ours
    int m_level = -1; // of the record being read
    bool m_inArray = false; // of that record's current field
    int m_current[3] = {NoField, NoField, NoField}; // by level
    unsigned m_seen = 0; // one bit a field
    // The records being read, by field and by level.
    QString m_texts[FieldCount];
    bool m_truths[FieldCount] = {};
    QUuid m_ids[3];
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
    // The parser recurses, but no deeper than the reader lets it. Numbers as text: they are only passed over.
    constexpr unsigned flags = rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag;
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, records);

    if (result.Code() == rapidjson::kParseErrorNumberTooBig) {
        const QByteArray plain = withoutNumbers(bytes);
        if (plain != bytes)
            return settingsFromJson(plain, error);
    }
    if (result.Code() == rapidjson::kParseErrorTermination)
        return failed(result.Code(), records.problem(), records.problemOffset());
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
