// SPDX-License-Identifier: MIT
// Every text of the program in a language that needs 40 % more room than English: each is looked up, and none
// is cut.
#include "settings/settingsview.h"
#include "strip/commands.h"
#include "strip/contentview.h"
#include "strip/hometileview.h"
#include "strip/tile.h"
#include "support/stripworld.h"

#include <QAbstractButton>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

using namespace support;

namespace {

/// Knows the texts of the template alone: what that lacks no translator would see.
class PseudoTranslator : public QTranslator
{
public:
    PseudoTranslator()
    {
        QFile file(QStringLiteral(PW_TEST_DATA "/../../resources/translations/pondwicket_en.ts"));
        file.open(QIODevice::ReadOnly);
        QXmlStreamReader xml(&file);
        while (xml.readNext() != QXmlStreamReader::Invalid && !xml.atEnd()) {
            if (xml.isStartElement() && xml.name() == u"source")
                m_texts.insert(xml.readElementText());
        }
    }

    bool isEmpty() const override { return m_texts.isEmpty(); }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        const QString english = QString::fromUtf8(text);
        if (qstrcmp(context, "pondWicket") != 0 || !m_texts.contains(english))
            return {};
        return u'[' + english + QString((english.size() * 2 + 4) / 5, u'ö') + u']';
    }

private:
    QSet<QString> m_texts;
};

QString textOf(const QWidget &widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        return label->text();
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    return button ? button->text() : QString();
}

/// What is wrong with the texts of a window: not looked up, or without the room that they ask for.
QString faults(const QWidget &window)
{
    QStringList found;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        const QString text = textOf(*widget);
        if (widget->window() != &window || !widget->isVisible() || text.isEmpty())
            continue;
        if (!text.contains(u'['))
            found.append(QStringLiteral("in English: ") + text);
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (widget->width() < widget->sizeHint().width() || !window.rect().contains(place))
            found.append(QStringLiteral("cut: ") + text);
    }
    for (const QAction *action : window.findChildren<QAction *>()) {
        if (!action->text().isEmpty() && !action->text().contains(u'['))
            found.append(QStringLiteral("in English: ") + action->text());
    }
    return found.join(u'\n');
}

} // namespace

class TestLongTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(QCoreApplication::installTranslator(&m_translator)); }
    void fitEverywhere_data()
    {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }

    void fitEverywhere()
    {
        QFETCH(Qt::LayoutDirection, direction);
        QGuiApplication::setLayoutDirection(direction);
        StripWorld world;
        world.addTile(u"[empty]"_qs, {});
        ContentView strip(world.config, world.services);
        Commands commands(world.config, world.services, strip);
        strip.show();

        QTest::mouseClick(strip.findChild<HomeTileView *>(), Qt::LeftButton, Qt::AltModifier);
        const auto *homeMenu = strip.findChild<widgets::Popover *>();
        QVERIFY(homeMenu && homeMenu->isVisible());
        QCOMPARE(faults(*homeMenu), QString());
        QTest::mouseClick(strip.findChild<HomeTileView *>(), Qt::LeftButton);

        QTest::mouseClick(strip.findChild<Tile *>(), Qt::LeftButton);
        QWidget *tileMenu = nullptr;
        for (widgets::Popover *popover : strip.findChildren<widgets::Popover *>())
            tileMenu = popover->isVisible() ? popover : tileMenu;
        QVERIFY(tileMenu);
        for (QMenu *menu : tileMenu->findChildren<QMenu *>())
            Q_EMIT menu->aboutToShow(); // fills it
        QCOMPARE(faults(*tileMenu), QString());

        commands.showMenus({});
        QCOMPARE(faults(strip), QString());

        SettingsView settings(world.config, world.filePanel);
        settings.show();
        for (int tab = 0; tab < settings.count(); ++tab) {
            settings.setCurrentIndex(tab);
            QCoreApplication::sendPostedEvents(); // lays it out
            QCOMPARE(faults(settings), QString());
        }
    }

private:
    PseudoTranslator m_translator;
};

QTEST_MAIN(TestLongTexts)

#include "tst_longtexts.moc"
