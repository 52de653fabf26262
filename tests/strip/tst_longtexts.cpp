// SPDX-License-Identifier: MIT
// Every text of the program in a language that needs 40 % more room than English: each is looked up, and none
// is cut.
#include "stripfixture.h"

#include "platform/files.h"
#include "settings/settingsview.h"
#include "strip/commands.h"
#include "strip/hometileview.h"

#include <QMenu>
#include <QTranslator>

namespace {

/// Knows the texts of the template alone: what that lacks no translator would see.
class PseudoTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return m_template.isEmpty(); }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        const QString english = QString::fromUtf8(text);
        const QString entry = u"<source>"_qs + english.toHtmlEscaped() + u"</source>"_qs;
        if (qstrcmp(context, "pondWicket") != 0 || !m_template.contains(entry.toUtf8()))
            return {};
        return u'[' + english + QString((english.size() * 2 + 4) / 5, u'ö') + u']';
    }

private:
    const QByteArray m_template =
        platform::readWholeFile(QStringLiteral(PW_TEST_DATA "/../../resources/translations/pondwicket_en.ts"),
                                nullptr)
            .value_or(QByteArray());
};

/// What is wrong with the texts of a window: not looked up, or without the room that they ask for.
QString faults(const QWidget &window)
{
    QStringList found;
    for (const QWidget *widget : visibleIn<QWidget>(window)) {
        const QString text = widget->property("text").toString(); // of labels and buttons
        if (widget->window() != &window || text.isEmpty())
            continue;
        if (!text.contains(u'['))
            found.append(u"in English: "_qs + text);
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        if (widget->width() < widget->sizeHint().width() || !window.rect().contains(place))
            found.append(u"cut: "_qs + text);
    }
    for (const QAction *action : window.findChildren<QAction *>()) {
        if (!action->text().isEmpty() && !action->text().contains(u'['))
            found.append(u"in English: "_qs + action->text());
    }
    return found.join(u'\n');
}

} // namespace

class TestLongTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fitEverywhere()
    {
        PseudoTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            QGuiApplication::setLayoutDirection(direction);
            StripFixture fixture;
            fixture.addTile(u"[empty]"_qs, {});
            fixture.show();
            Commands commands(fixture.config, fixture.services, *fixture.strip);

            QTest::mouseClick(fixture.strip->findChild<HomeTileView *>(), Qt::LeftButton, Qt::AltModifier);
            QCOMPARE(faults(*fixture.popover()), QString());
            fixture.popover()->dismiss();

            QTest::mouseClick(fixture.tile(), Qt::LeftButton);
            for (QMenu *menu : fixture.popover()->findChildren<QMenu *>())
                Q_EMIT menu->aboutToShow(); // fills it
            QCOMPARE(faults(*fixture.popover()), QString());
            commands.showMenus({});
            QCOMPARE(faults(*fixture.strip), QString());

            SettingsView settings(fixture.config, fixture.filePanel);
            settings.show();
            for (int tab = 0; tab < 2; ++tab) {
                settings.setCurrentIndex(tab);
                QCoreApplication::sendPostedEvents(); // lays it out
                QCOMPARE(faults(settings), QString());
            }
        }
    }
};

QTEST_MAIN(TestLongTexts)
#include "tst_longtexts.moc"
