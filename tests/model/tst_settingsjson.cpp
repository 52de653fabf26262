// SPDX-License-Identifier: MIT
#include "model/settingsjson.h"
#include "platform/files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QStringEncoder>
#include <QTest>

namespace {

QByteArray dataFile(const char *name)
{
    return *platform::readWholeFile(QStringLiteral(PW_TEST_DATA "/settings/") + QLatin1String(name), nullptr);
}

/// The records of a text, or the sentence that says why there are none.
std::optional<SettingsData> read(const QByteArray &text, QString *why = nullptr)
{
    platform::Error error;
    auto data = model::settingsFromJson(text, &error);
    if (why)
        *why = error.description();
    return data;
}

/// The example with the object at the level (0 the root, 1 its tile, 2 the tile's first link) put through
/// `edit`.
template <typename Edit> QByteArray edited(int level, Edit edit)
{
    QJsonObject root = QJsonDocument::fromJson(dataFile("example.json")).object();
    QJsonArray tiles = root[u"tileItems"].toArray();
    QJsonObject tile = tiles[0].toObject();
    QJsonArray links = tile[u"tileMenuItems"].toArray();
    QJsonObject link = links[0].toObject();
    if (level == 2) {
        edit(link);
        links[0] = link;
        tile[u"tileMenuItems"] = links;
    }
    if (level == 1)
        edit(tile);
    if (level > 0) {
        tiles[0] = tile;
        root[u"tileItems"] = tiles;
    }
    if (level == 0)
        edit(root);
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

} // namespace

class TestSettingsJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textSurvivesARoundTrip();
    void anyTextSurvivesARoundTrip();
    void handMadeFileLoads();
    void emptyListsAreValid();
    void everyMemberIsRequiredWithItsType_data();
    void everyMemberIsRequiredWithItsType();
    void hostileText_data();
    void hostileText();
    void problemIsNamedWithItsPlace_data();
    void problemIsNamedWithItsPlace();
    void encodings_data();
    void encodings();
};

void TestSettingsJson::textSurvivesARoundTrip()
{
    const QByteArray example = dataFile("example.json");
    const auto data = read(example);
    QVERIFY(data);
    const TileItem &tile = data->tileItems.first();
    QCOMPARE(tile.tileName, QStringLiteral("What’s for dinner?"));
    QCOMPARE(tile.scratchpadText, QStringLiteral("a\"b\\c\b\f\n\r\t\u0001\u001Fd🙂"));
    QCOMPARE(tile.tileMenuItems.first().itemString, QStringLiteral("maps://?q=noodles"));
    QVERIFY(tile.tileMenuItems.last().id.isNull());
    QCOMPARE(model::settingsToJson(*data), example);
}

void TestSettingsJson::anyTextSurvivesARoundTrip()
{
    // Every length around the writer's blocks, every kind of character at every place in them.
    const QStringList pieces = {QStringLiteral("a"),      QStringLiteral("/"),    QStringLiteral("\""),
                                QStringLiteral("\x1f"),   QStringLiteral("\x7f"), QStringLiteral("é"),
                                QStringLiteral("\uFFFF"), QStringLiteral("🙂"), QString(QChar(0))};
    QRandomGenerator random(1);
    SettingsData data;
    data.availableThemes.clear();
    for (int length = 0; length < 300; ++length) {
        QString text;
        for (int i = 0; i < length % 40; ++i)
            text += random.bounded(3) ? QStringLiteral("x") : pieces[random.bounded(pieces.size())];
        data.availableThemes += text;
    }
    const QByteArray json = model::settingsToJson(data);
    QCOMPARE(read(json)->availableThemes, data.availableThemes);
    QCOMPARE(QJsonDocument::fromJson(json).object()[u"availableThemes"].toVariant().toStringList(),
             data.availableThemes);

    // Half a surrogate pair cannot be written; what is written must load.
    data.appIcon = QStringLiteral("a") + QChar(0xD83D) + QStringLiteral("b") + QChar(0xDE42);
    QCOMPARE(read(model::settingsToJson(data))->appIcon, QStringLiteral("a\uFFFDb\uFFFD"));
}

void TestSettingsJson::handMadeFileLoads()
{
    const auto data = read(dataFile("handmade.json"));
    QVERIFY(data);
    QCOMPARE(data->currentTheme, QStringLiteral("Δ"));
    QCOMPARE(data->availableThemes, QStringList());
    QCOMPARE(data->direction, QStringLiteral("ttb"));
    QCOMPARE(data->tileItems.size(), 1);
    const TileItem expected = {QUuid::fromString(u"7C1D2E3F-4A5B-4C6D-8E9F-0A1B2C3D4E5F"),
                               QStringLiteral("default"),
                               QStringLiteral("first"),
                               QStringLiteral("file:///tmp/Tile-1/"),
                               true,
                               QStringLiteral("🙂\n"),
                               {{QUuid::fromString(u"9F8E7D6C-5B4A-4392-81A2-6A5B4C3D2E1F"),
                                 QStringLiteral("maps://?q=pizza"), QStringLiteral("Pizza")}},
                               false};
    QCOMPARE(data->tileItems.first(), expected);
    QVERIFY(model::settingsToJson(*data).contains("\"id\" : \"9F8E7D6C-5B4A-4392-81A2-6A5B4C3D2E1F\""));
}

void TestSettingsJson::emptyListsAreValid()
{
    const auto noLinks = read(edited(1, [](QJsonObject &tile) { tile[u"tileMenuItems"] = QJsonArray(); }));
    QVERIFY(noLinks && noLinks->tileItems.first().tileMenuItems.isEmpty());
    const auto noTiles = read(edited(0, [](QJsonObject &root) { root[u"tileItems"] = QJsonArray(); }));
    QVERIFY(noTiles && noTiles->tileItems.isEmpty());
    QVERIFY(read(model::settingsToJson(*noTiles)));
}

void TestSettingsJson::everyMemberIsRequiredWithItsType_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value"); // undefined: the member is missing
    QTest::addColumn<QString>("path");

    const QString text = QStringLiteral("text");
    const QJsonArray values = {QJsonValue(), true, 1, text, QJsonArray(), QJsonObject(), QJsonArray({1})};
    const QJsonObject root = QJsonDocument::fromJson(dataFile("example.json")).object();
    const QJsonObject tile = root[u"tileItems"][0].toObject();
    const QJsonObject records[] = {root, tile, tile[u"tileMenuItems"][0].toObject()};
    const QString prefixes[] = {QString(), QStringLiteral("tileItems[0]."),
                                QStringLiteral("tileItems[0].tileMenuItems[0].")};
    for (int level = 0; level < 3; ++level) {
        for (const QString &key : records[level].keys()) {
            const QJsonValue right = records[level][key];
            const QString path = prefixes[level] + key;
            QTest::addRow("%s missing", qPrintable(path))
                << level << key << QJsonValue(QJsonValue::Undefined) << path;
            for (const QJsonValue &value : values) {
                // A text is right for texts, and an empty list for every list.
                const bool fits = value.type() == right.type() && key != u"id"
                    && (!value.isArray() || value.toArray().isEmpty());
                if (!fits)
                    QTest::addRow("%s is %s", qPrintable(path),
                                  QJsonDocument({value}).toJson(QJsonDocument::Compact).constData())
                        << level << key << value << path;
            }
        }
    }
}

void TestSettingsJson::everyMemberIsRequiredWithItsType()
{
    QFETCH(int, level);
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    QFETCH(QString, path);
    QString why;
    QVERIFY(!read(edited(level, [&](QJsonObject &record) { record.insert(key, value); }), &why));
    QVERIFY2(why.contains(path), qPrintable(why));
}

void TestSettingsJson::hostileText_data()
{
    QTest::addColumn<QByteArray>("value"); // of a key that is not ours
    QTest::addColumn<bool>("isValid");
    const auto row = [](const char *name, QByteArrayView value, bool isValid) {
        QTest::newRow(name) << value.toByteArray() << isValid;
    };
    row("raw control character", "\"x\x01y\"", false);
    row("raw line end", "\"x\ny\"", false);
    row("unknown escape", R"("\q")", false);
    row("cut-off escape", R"("\u12")", false);
    row("lone high surrogate", R"("\uD800")", false);
    row("lone low surrogate", R"("\uDC00")", false);
    row("lone low surrogate in a key", R"({"\uDC00":1})", false);
    row("two high surrogates", R"("\uD800\uD800")", false);
    row("surrogate pair", R"("\uD83D\uDE42")", true);
    row("escaped NUL", R"("\u0000")", true);
    row("overlong UTF-8", "\"\xC0\xAF\"", false);
    row("surrogate in UTF-8", "\"\xED\xA0\x80\"", false);
    row("UTF-8 past U+10FFFF", "\"\xF4\x90\x80\x80\"", false);
    row("cut-off UTF-8", "\"\xE2\x82\"", false);
    row("bad UTF-8 in a key", "{\"\xFF\":1}", false);
    row("NUL in a string", QByteArrayView("\"x\0y\"", 5), false);
    row("NUL between tokens", QByteArrayView("1\0", 2), false);
    row("no-break space between tokens",
        "\xC2\xA0"
        "1",
        false);
    row("form feed between tokens", "\f1", false);
    row("leading zero", "01", false);
    row("plus sign", "+1", false);
    row("nothing before the point", ".5", false);
    row("nothing after the point", "1.", false);
    row("minus alone", "-", false);
    row("not a number", "NaN", false);
    row("infinity", "-Infinity", false);
    row("hexadecimal", "0x10", false);
    row("number", "-0.5e-3", true);
    row("number past every double", "-1.5e999", true); // it failed the whole file
    row("past every double and no number", "1e999x", false);
    row("half a number past every double", QByteArray(400, '1') + ".", false);
    row("long number", "123456789012345678901234567890.5", true);
    row("line comment", "1 // x\n", false);
    row("comment", "/* x */ 1", false);
    row("comma at an object's end", R"({"a":1,})", false);
    row("comma at an array's end", "[1,]", false);
    row("single quotes", "'x'", false);
    row("bare word", "x", false);
    row("capital True", "True", false);
    row("cut-off word", "nul", false);
    row("unclosed", "[", false);
    row("closed by the wrong bracket", "[}", false);
    const auto nested = [](int depth) { return QByteArray(depth - 1, '[') + QByteArray(depth - 1, ']'); };
    row("512 levels", nested(512), true);
    row("513 levels", nested(513), false);
    row("a million levels", nested(1000000), false);
    row("a million open levels", QByteArray(1000000, '['), false);
}

void TestSettingsJson::hostileText()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, isValid);
    QByteArray text = dataFile("example.json");
    text.insert(1, "\"stray\":" + value + ',');
    QString why;
    QCOMPARE(read(text, &why).has_value(), isValid);
    QCOMPARE(why.isEmpty(), isValid);
    QVERIFY(!why.contains(u'\n'));
}

void TestSettingsJson::problemIsNamedWithItsPlace_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *before, const char *after, const char *problem) {
        QTest::newRow(problem) << QByteArray(before) << QByteArray(after) << QString::fromUtf8(problem);
    };
    row("\"7C1D2E3F-4A5B-4C6D-8E9F-0A1B2C3D4E5F\"", "\"{7C1D2E3F-4A5B-4C6D-8E9F-0A1B2C3D4E5F}\"",
        "“tileItems[0].id” is not a UUID (line 12, column 14)");
    row("file:", "fi le:", "“tileItems[0].tileDirectory” is not a URL (line 15, column 25)");
    row("\"Noodles\"", "null",
        "“tileItems[0].tileMenuItems[0].itemName” is not a string (line 22, column 24)");
    row("\"itemName\" : \"\"", "\"name\" : \"\"",
        "“tileItems[0].tileMenuItems[1].itemName” is missing (line 28, column 9)");
    row("\"1984\",\n", "\"1984\", 7,\n", "“availableThemes[1]” is not a string (line 4, column 13)");
    row("true", "yes", "Invalid value (line 7, column 17)");
    row("{\n  \"currentTheme\"", "[{\n  \"currentTheme\"", "it is not an object (line 1, column 1)");
    row("dinner?", "dinner?\xFF", "a string is not valid Unicode (line 14, column 20)");
}

void TestSettingsJson::problemIsNamedWithItsPlace()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QString, problem);
    QString why;
    read(dataFile("example.json").replace(before, after), &why);
    QCOMPARE(why, QStringLiteral("The settings file is not valid: %1.").arg(problem));
}

void TestSettingsJson::encodings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isValid");
    const QByteArray plain = dataFile("example.json");
    const auto encoded = [&](QStringConverter::Encoding encoding) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        return QByteArray(encoder.encode(QString::fromUtf8(plain)));
    };
    const auto utf16 = encoded(QStringConverter::Utf16LE);
    const auto utf32 = encoded(QStringConverter::Utf32BE);
    QTest::newRow("UTF-8 with a mark") << encoded(QStringConverter::Utf8) << true;
    QTest::newRow("UTF-16LE") << utf16 << true;
    QTest::newRow("UTF-16BE") << encoded(QStringConverter::Utf16BE) << true;
    QTest::newRow("UTF-32LE") << encoded(QStringConverter::Utf32LE) << true;
    QTest::newRow("UTF-32BE") << utf32 << true;
    QTest::newRow("UTF-16 without a mark") << utf16.mid(2) << false;
    QTest::newRow("UTF-16, odd length") << utf16.chopped(1) << false;
    QTest::newRow("UTF-16, lone surrogate") << QByteArray(utf16).replace(QByteArray("D\0e\0", 4),
                                                                         QByteArray("\0\xD8"
                                                                                    "e\0",
                                                                                    4))
                                            << false;
    QTest::newRow("UTF-32, odd length") << utf32.chopped(1) << false;
    QTest::newRow("UTF-32, past U+10FFFF") << QByteArray(utf32).replace(4, 1, "\x7F") << false;
    QTest::newRow("two marks") << "\xEF\xBB\xBF\xEF\xBB\xBF" + plain << false;
    QTest::newRow("mark alone") << QByteArray("\xEF\xBB\xBF") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("blanks alone") << QByteArray(" \r\n\t") << false;
    QTest::newRow("blanks around") << " \r\n\t" + plain + " \r\n\t" << true;
    QTest::newRow("text after the root") << plain + "x" << false;
    QTest::newRow("second root") << plain + plain << false;
    QTest::newRow("NUL after the root") << plain + QByteArray("\0", 1) << false;
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1A\n\0\0", 10) << false;
}

void TestSettingsJson::encodings()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isValid);
    const auto data = read(bytes);
    QCOMPARE(data.has_value(), isValid);
    if (data)
        QCOMPARE(model::settingsToJson(*data), dataFile("example.json"));
}

QTEST_APPLESS_MAIN(TestSettingsJson)
#include "tst_settingsjson.moc"
