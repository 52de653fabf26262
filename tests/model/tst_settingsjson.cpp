// SPDX-License-Identifier: MIT
#include "model/settingsjson.h"
#include "platform/files.h"

#include <QTest>

namespace {

/// A file as the program writes it, with one tile of two links. (In the source, moc trips over it.)
QByteArray example()
{
    return *platform::readWholeFile(QStringLiteral(PW_TEST_DATA "/settings/example.json"), nullptr);
}

} // namespace

class TestSettingsJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textSurvivesARoundTrip();
};

void TestSettingsJson::textSurvivesARoundTrip()
{
    platform::Error error;
    const auto data = model::settingsFromJson(example(), &error);
    QVERIFY2(data, qPrintable(error.fullDescription()));
    QCOMPARE(data->availableThemes, QStringList({QStringLiteral("1984"), QStringLiteral("2024")}));
    QVERIFY(data->showsDate);
    QCOMPARE(data->tileItems.size(), 1);
    const TileItem &tile = data->tileItems.first();
    QCOMPARE(tile.tileName, QStringLiteral("What’s for dinner?"));
    QCOMPARE(tile.scratchpadText, QStringLiteral("a\"b\\c\b\f\n\r\t\u0001\u001Fd🙂"));
    QCOMPARE(tile.tileMenuItems.size(), 2);
    QCOMPARE(tile.tileMenuItems.first().itemString, QStringLiteral("maps://?q=noodles"));
    QVERIFY(tile.tileMenuItems.last().id.isNull());
    QCOMPARE(model::settingsToJson(*data), example());
}

QTEST_APPLESS_MAIN(TestSettingsJson)
#include "tst_settingsjson.moc"
