// SPDX-License-Identifier: MIT
#include "model/settingsjson.h"
#include "support/files.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStringEncoder>
#include <QTest>

namespace {

QByteArray dataFile(const char *name)
{
    return support::bytesOf(QStringLiteral(PW_TEST_DATA "/settings/") + QLatin1String(name));
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

} // namespace

class TestSettingsJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textSurvivesARoundTrip()
    {
        const QByteArray example = dataFile("example.json");
        const auto data = read(example);
        QVERIFY(data);
        const TileItem &tile = data->tileItems.first();
        QCOMPARE(tile.scratchpadText, u"a\"b\\c\b\f\n\r\t\u0001\u001Fd🙂"_qs);
        QVERIFY(tile.tileMenuItems.last().id.isNull());
        QCOMPARE(model::settingsToJson(*data), example);
    }

    void anyTextSurvivesARoundTrip()
    {
        // Every length around the blocks of writer and reader, every kind of character at every place in
        // them.
        const QStringList pieces = {u"a"_qs, u"/"_qs,      u"\""_qs,   u"\x1f"_qs,       u"\x7f"_qs,
                                    u"é"_qs, u"\uFFFF"_qs, u"🙂"_qs, QString(QChar(0))};
        QRandomGenerator random(1);
        SettingsData data;
        data.availableThemes.clear();
        for (int length = 0; length < 300; ++length) {
            QString text;
            for (int i = 0; i < length % 40 * (length < 260 ? 1 : 60); ++i)
                text += random.bounded(3) ? u"x"_qs : pieces[random.bounded(pieces.size())];
            data.availableThemes += text;
        }
        const QByteArray json = model::settingsToJson(data);
        QCOMPARE(read(json)->availableThemes, data.availableThemes);
        QCOMPARE(QJsonDocument::fromJson(json).object()[u"availableThemes"].toVariant().toStringList(),
                 data.availableThemes);

        // Texts that were read share memory, which must not show when some change and others go.
        QStringList kept = read(json)->availableThemes;
        kept.removeIf([&](const QString &) { return random.bounded(2); });
        const QStringList copy = kept;
        for (QString &text : kept)
            text.prepend(u'<').append(u"xyz>"_qs).squeeze();
        for (qsizetype i = 0; i < kept.size(); ++i)
            QCOMPARE(kept[i], u'<' + copy[i] + u"xyz>"_qs);

        // Half a surrogate pair cannot be written; what is written must load. A byte-order mark at the
        // beginning of a text was lost.
        data.appIcon = u"\uFEFFa"_qs + QChar(0xD83D) + u"b"_qs + QChar(0xDE42);
        QCOMPARE(read(model::settingsToJson(data))->appIcon, u"\uFEFFa\uFFFDb\uFFFD"_qs);
    }

    void handMadeFileLoads()
    {
        // What was left out, escaped or in another order is all there when it is saved.
        const auto data = read(dataFile("handmade.json"));
        QVERIFY(data);
        QCOMPARE(model::settingsToJson(*data), dataFile("handmade-saved.json"));
    }

    void everyMemberIsRequiredWithItsType()
    {
        const QString example = QString::fromUtf8(dataFile("example.json"));
        auto members = QRegularExpression(u"\"(\\w+)\" : (.)"_qs).globalMatch(example);
        while (members.hasNext()) {
            const QRegularExpressionMatch member = members.next();
            const QString key = member.captured(1);
            for (const QString &value : {QString(), u"null"_qs, u"true"_qs, u"1"_qs, u"\"text\""_qs, u"[]"_qs,
                                         u"{}"_qs, u"[1]"_qs}) {
                const bool isType =
                    value.left(1).replace(u't', u'f') == member.captured(2).replace(u't', u'f');
                if (isType && key != u"id" && value != u"[1]")
                    continue; // a text is right for texts, and an empty list for every list
                // What the member was becomes that of a key that is not ours.
                const QString instead =
                    value.isEmpty() ? u"\"stray\" : "_qs : u"\"%1\" : %2, \"stray\" : "_qs.arg(key, value);
                QString text = example;
                text.replace(member.capturedStart(), member.capturedLength() - 1, instead);
                QString why;
                QVERIFY2(!read(text.toUtf8(), &why) && why.contains(key), qPrintable(key + value + why));
            }
        }
    }

    void hostileText()
    {
        const auto nested = [](int depth) { return QByteArray(depth - 1, '[') + QByteArray(depth - 1, ']'); };
        const auto check = [](const QByteArray &value, bool isValid) { // of a key that is not ours
            QByteArray text = dataFile("example.json");
            text.insert(1, "\"stray\":" + value + ',');
            QString why;
            QVERIFY2(read(text, &why).has_value() == isValid, value.left(40).toPercentEncoding().constData());
            QCOMPARE(why.isEmpty(), isValid);
            QVERIFY(!why.contains(u'\n'));
        };
        for (const QByteArray &good :
             {QByteArray(R"("\uD83D\uDE42")"), QByteArray(R"("\u0000")"), QByteArray("-0.5e-3"),
              QByteArray("-1.5e999"), // past every double: it failed the whole file
              QByteArray("123456789012345678901234567890.5"), nested(512)})
            check(good, true);
        // Characters and escapes, halves of surrogate pairs, UTF-8, what stands between tokens, numbers,
        // ends.
        const QByteArray hostile =
            "\"x\x01y\"|\"x\ny\"|"
            R"("\q"|"\u12"|)"
            R"("\uD800"|"\uDC00"|{"\uDC00":1}|"\uD800\uD800"|)"
            "\"\xC0\xAF\"|\"\xED\xA0\x80\"|\"\xF4\x90\x80\x80\"|\"\xE2\x82\"|{\"\xFF\":1}|"
            "\xC2\xA0 1|\f1|/* x */ 1|1 // x\n|"
            "01|+1|.5|1.|-|NaN|-Infinity|0x10|1e999x|"
            "{\"a\":1,}|[1,]|'x'|x|True|nul|[|[}";
        const QByteArrayList others = {
            QByteArray("\"x\0y\"", 5), QByteArray("1\0", 2),    QByteArray(400, '1') + ".", nested(513),
            nested(1000000),           QByteArray(1000000, '[')};
        for (const QByteArray &bad : hostile.split('|') + others)
            check(bad, false);
    }

    void problemIsNamedWithItsPlace()
    {
        const char *const cases[][3] = {
            {"\"7C1D2E3F-4A5B-4C6D-8E9F-0A1B2C3D4E5F\"", "\"{7C1D2E3F-4A5B-4C6D-8E9F-0A1B2C3D4E5F}\"",
             "“tileItems[0].id” is not a UUID (line 12, column 14)"},
            {"file:", "fi le:", "“tileItems[0].tileDirectory” is not a URL (line 15, column 25)"},
            {"\"1984\",\n", "\"1984\", 7,\n", "“availableThemes[1]” is not a string (line 4, column 13)"},
            {"true", "yes", "Invalid value (line 7, column 17)"},
            {"{\n  \"currentTheme\"", "[{\n  \"currentTheme\"", "it is not an object (line 1, column 1)"},
            {"dinner?", "dinner?\xFF", "a string is not valid Unicode (line 14, column 20)"}};
        for (const auto &[before, after, problem] : cases) {
            QString why;
            read(dataFile("example.json").replace(before, after), &why);
            QCOMPARE(why, u"The settings file is not valid: %1."_qs.arg(QString::fromUtf8(problem)));
        }
    }

    void encodings()
    {
        const QByteArray plain = dataFile("example.json");
        const auto encoded = [&](QStringConverter::Encoding encoding) -> QByteArray {
            return QStringEncoder(encoding, QStringConverter::Flag::WriteBom)(QString::fromUtf8(plain));
        };
        const QByteArray utf16 = encoded(QStringConverter::Utf16LE);
        const QByteArray utf32 = encoded(QStringConverter::Utf32BE);
        for (const QByteArray &good :
             {encoded(QStringConverter::Utf8), utf16, encoded(QStringConverter::Utf16BE),
              encoded(QStringConverter::Utf32LE), utf32, " \r\n\t" + plain + " \r\n\t"}) {
            const auto data = read(good);
            QVERIFY2(data, good.first(20).toHex().constData());
            QCOMPARE(model::settingsToJson(*data), plain);
        }
        const QByteArray mark = "\xEF\xBB\xBF";
        for (const QByteArray &bad : // without a mark, cut, a lone surrogate, past U+10FFFF, two marks
             {utf16.mid(2), utf16.chopped(1), utf32.chopped(1),
              QByteArray(utf16).replace(QByteArray("D\0e\0", 4), QByteArray::fromHex("00D86500")),
              QByteArray(utf32).replace(4, 1, "\x7F"), mark + mark + plain, mark, QByteArray(),
              QByteArray(" \r\n\t"), plain + "x", plain + plain, plain + '\0',
              QByteArray("\x89PNG\r\n\x1A\n\0\0", 10)})
            QVERIFY2(!read(bad), (bad.left(8) + bad.right(8)).toHex().constData());
    }
};

QTEST_APPLESS_MAIN(TestSettingsJson)
#include "tst_settingsjson.moc"
