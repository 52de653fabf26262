// SPDX-License-Identifier: MIT
#include "model/jsonreader.h"
#include "model/jsontext.h"
#include "model/settingsjson.h"
#include "model/uuidtext.h"
#include "platform/uri.h"

#include <iterator>
#include <vector>

namespace model {

namespace {

/// Reads the records, each in the order in which we write its keys or in any other.
class RecordReader
{
public:
    explicit RecordReader(QByteArrayView text)
        : m_json(text)
    {
    }

    bool settings(SettingsData *data)
    {
        return record({"currentTheme", "availableThemes", "showsDate", "direction", "appIcon", "tileItems"},
                      [&](size_t key) {
                          switch (key) {
                          case 0:
                              return text(&data->currentTheme);
                          case 1:
                              return list(&data->availableThemes, QString(),
                                          [this](QString *theme) { return text(theme); });
                          case 2:
                              return truth(&data->showsDate);
                          case 3:
                              return text(&data->direction);
                          case 4:
                              return text(&data->appIcon);
                          default:
                              return list(&data->tileItems, TileItem{{}, {}, {}, {}, false, {}, {}, false},
                                          [this](TileItem *item) { return tile(item); });
                          }
                      })
            && m_json.end();
    }

    QString problem() const
    {
        if (!m_isOfField)
            return m_json.problem();
        return (m_path.isEmpty() ? QStringLiteral("it ") : QStringLiteral("“%1” ").arg(m_path))
            + m_json.problem();
    }
    qsizetype problemOffset() const { return m_json.problemOffset(); }

private:
    bool tile(TileItem *item)
    {
        return record({"id", "iconName", "tileName", "tileDirectory", "showsScratchpad", "scratchpadText",
                       "tileMenuItems"},
                      [&](size_t key) {
                          switch (key) {
                          case 0:
                              return uuid(&item->id);
                          case 1:
                              return text(&item->iconName);
                          case 2:
                              return text(&item->tileName);
                          case 3:
                              return address(&item->tileDirectory);
                          case 4:
                              return truth(&item->showsScratchpad);
                          case 5:
                              return text(&item->scratchpadText);
                          default:
                              return links(&item->tileMenuItems);
                          }
                      });
    }

    /// By way of one list that has grown already.
    bool links(QList<TileMenuItem> *items)
    {
        m_links.clear();
        if (!list(&m_links, TileMenuItem{{}, {}, {}}, [this](TileMenuItem *item) { return link(item); }))
            return false;
        *items = {std::make_move_iterator(m_links.begin()), std::make_move_iterator(m_links.end())};
        return true;
    }

    bool link(TileMenuItem *item)
    {
        const qsizetype start = m_json.offset();
        if (linkAsWritten(item))
            return true;
        m_json.moveTo(start);
        return record({"id", "itemString", "itemName"}, [&](size_t key) {
            return key == 0 ? uuid(&item->id) : text(key == 1 ? &item->itemString : &item->itemName);
        });
    }

    /// A large file is nothing but links, and nearly all stand there as we write them.
    bool linkAsWritten(TileMenuItem *item)
    {
        return m_json.passText("\n        {\n          \"id\" : ") && plainUuid(&item->id)
            && m_json.passText(",\n          \"itemString\" : ") && m_json.string(&item->itemString)
            && m_json.passText(",\n          \"itemName\" : ") && m_json.string(&item->itemName)
            && m_json.passText("\n        }");
    }

    /// Reads an object that has each of the keys; `readValue` gets a key's index. Of two equal keys the first
    /// counts.
    template <typename ReadValue> bool record(std::initializer_list<QByteArrayView> keys, ReadValue readValue)
    {
        if (m_json.peek() != '{')
            return wrongType(QStringLiteral("an object"));
        unsigned seen = 0; // one bit a key
        size_t key = size_t(-1);
        const bool isWhole = m_json.object([&] {
            if (!m_json.name(keys, key + 1, &key))
                return false;
            if (key == keys.size() || seen & 1u << key)
                return m_json.skip();
            seen |= 1u << key;
            return readValue(key) || inside(QLatin1String(keys.begin()[key]));
        });
        if (!isWhole || seen + 1 == 1u << keys.size())
            return isWhole;
        for (key = 0; seen & 1u << key;)
            ++key;
        failField(QStringLiteral("is missing"), m_json.offset() - 1);
        return inside(QLatin1String(keys.begin()[key]));
    }

    template <typename List, typename ReadElement>
    bool list(List *list, const typename List::value_type &blank, ReadElement readElement)
    {
        if (m_json.peek() != '[')
            return wrongType(QStringLiteral("an array"));
        return m_json.array([&] {
            return readElement(&list->emplace_back(blank))
                || inside(QStringLiteral("[%1]").arg(list->size() - 1));
        });
    }

    bool text(QString *value)
    {
        return m_json.peek() == '"' ? m_json.string(value) : wrongType(QStringLiteral("a string"));
    }

    bool truth(bool *value)
    {
        const char first = m_json.peek();
        return first == 't' || first == 'f' ? m_json.boolean(value)
                                            : wrongType(QStringLiteral("true or false"));
    }

    bool uuid(QUuid *value)
    {
        const QString wanted = QStringLiteral("a UUID");
        if (m_json.peek() != '"')
            return wrongType(wanted);
        if (plainUuid(value))
            return true;
        const qsizetype start = m_json.offset();
        QString text;
        if (!m_json.string(&text))
            return false;
        const std::optional<QUuid> id = uuidFromText(text.toUtf8());
        *value = id.value_or(QUuid());
        return id || failField(QStringLiteral("is not ") + wanted, start);
    }

    /// Passes a UUID that stands there without escapes.
    bool plainUuid(QUuid *value)
    {
        const QByteArrayView quoted = m_json.ahead(uuidLength + 2);
        if (quoted.size() != uuidLength + 2 || quoted.front() != '"' || quoted.back() != '"')
            return false;
        const std::optional<QUuid> id = uuidFromText(quoted.sliced(1, uuidLength));
        if (id) {
            *value = *id;
            m_json.moveTo(m_json.offset() + quoted.size());
        }
        return id.has_value();
    }

    bool address(QString *value)
    {
        const QString wanted = QStringLiteral("a URL");
        if (m_json.peek() != '"')
            return wrongType(wanted);
        const qsizetype start = m_json.offset();
        return m_json.string(value)
            && (platform::parseUriReference(*value) || failField(QStringLiteral("is not ") + wanted, start));
    }

    bool wrongType(const QString &wanted)
    {
        const char first = m_json.peek();
        const qsizetype start = m_json.offset();
        if (first != '{' && first != '[' && !m_json.skip())
            return false; // not even a value
        return failField(QStringLiteral("is not ") + wanted, start);
    }

    bool failField(const QString &problem, qsizetype offset)
    {
        m_isOfField = true;
        return m_json.fail(problem, offset);
    }

    /// On the way out of a problem: names what it stands in.
    bool inside(const QString &step)
    {
        if (m_isOfField)
            m_path = step + QLatin1String(m_path.isEmpty() || m_path.startsWith(u'[') ? "" : ".") + m_path;
        return false;
    }

    JsonReader m_json;
    std::vector<TileMenuItem> m_links; // of the present tile
    bool m_isOfField = false; // the problem is that of a field
    QString m_path; // of that field
};

} // namespace

std::optional<SettingsData> settingsFromJson(QByteArrayView bytes, platform::Error *error)
{
    const auto failed = [error](const QString &problem, const QString &place) {
        if (error) {
            *error = {QStringLiteral("JSON"), 1,
                      QStringLiteral("The settings file is not valid: %1 (%2).").arg(problem, place),
                      QString()};
        }
        return std::nullopt;
    };
    const std::optional<QByteArray> text = narrowed(bytes);
    if (!text)
        return failed(QStringLiteral("it is not valid Unicode"), placeOf(bytes, 0));
    SettingsData data = {{}, {}, false, {}, {}, {}};
    RecordReader reader(*text);
    if (!reader.settings(&data))
        return failed(reader.problem(), placeOf(*text, reader.problemOffset()));
    return data;
}

} // namespace model
