// SPDX-License-Identifier: MIT
// settingsgallery FOLDER [dark] [large] [long]: pictures of the settings window with its menus, in a dark
// palette, with large fonts, with texts 40 % longer. QT_SCALE_FACTOR=2 gives the dense ones.

#include "model/config.h"
#include "model/tiles.h"
#include "platform/filepanel.h"
#include "settings/settingsview.h"
#include "themes/themestore.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QStyleFactory>
#include <QTableView>
#include <QTemporaryDir>
#include <QTranslator>

namespace {

class NoPanel : public platform::FilePanel
{
public:
    std::optional<QString> chooseFileOrFolder(const QString &) override { return std::nullopt; }
    std::optional<QString> chooseFile(const QString &) override { return std::nullopt; }
};

class LongTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        QString result = QString::fromUtf8(text);
        if (qstrcmp(context, "pondWicket") != 0)
            return result;
        const QString filler = QStringLiteral(" ëxträ wörds tö fïll");
        while (result.size() < qsizetype(1.4 * double(qstrlen(text))))
            result += filler.at(result.size() % filler.size());
        return result;
    }
};

QPalette darkPalette()
{
    QPalette dark(QColor(53, 53, 53), QColor(45, 45, 45));
    dark.setColor(QPalette::Base, QColor(35, 35, 35));
    dark.setColor(QPalette::AlternateBase, QColor(42, 42, 42));
    dark.setColor(QPalette::Highlight, QColor(42, 130, 218));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    return dark;
}

class Gallery
{
public:
    Gallery(QString folder, QString suffix)
        : m_folder(std::move(folder))
        , m_suffix(std::move(suffix))
        , m_config(m_home.path(), m_home.filePath(QStringLiteral("state")))
        , m_window(m_config, m_panel)
    {
        themes::installBuiltInThemes(m_config);
        m_config.setShowsDate(true);
        for (int i = 0; i < 3; ++i)
            model::addTile(m_config);
    }

    void draw()
    {
        m_window.show();
        settle();
        save(m_window, "general");
        press(m_window, "Application icon");
        save(*QApplication::activePopupWidget(), "application-icons");
        QApplication::activePopupWidget()->close();

        m_window.setCurrentIndex(1);
        settle();
        save(m_window, "tiles");
        press(m_window, "Tile icon");
        save(*QApplication::activePopupWidget(), "tile-icons");
        QApplication::activePopupWidget()->close();
        press(m_window, "Add item");
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QLatin1String("New items"))
                save(*window, "grid");
        }
        press(m_window, "Add item");

        m_config.editTile(m_config.tileItems().first().id, fillWithOddLinks);
        settle();
        save(m_window, "odd-links");
        auto *table = m_window.findChild<QTableView *>(QStringLiteral("LinkTable"));
        table->setCurrentIndex(table->model()->index(1, 2));
        settle();
        save(m_window, "edited-link");
        for (int i = 0; i < 3; ++i)
            model::addTile(m_config);
        settle();
        save(m_window, "many-tiles");
    }

private:
    static void fillWithOddLinks(TileItem &tile)
    {
        tile.tileName = QStringLiteral("A name of thirty-two characters.");
        for (int i = 0; i < 1000; ++i) {
            TileMenuItem link;
            link.itemName = QStringLiteral("Link %1 & <b>friends</b>").arg(i);
            const QStringList addresses = {QStringLiteral("https://example.org/a/rather/long/path/%1").arg(i),
                                           QStringLiteral("example.org/x"), QDir::tempPath(),
                                           QStringLiteral("mailto:a@example.org"),
                                           QStringLiteral("ssh://host")};
            link.itemString = addresses.at(i % addresses.size());
            tile.tileMenuItems.prepend(link);
        }
    }
    static void settle()
    {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
    }
    static void press(QWidget &window, const char *name)
    {
        window.findChild<QAbstractButton *>(QLatin1String(name))->click();
        settle();
    }
    void save(QWidget &widget, const char *name) const
    {
        widget.grab().save(m_folder + u'/' + QLatin1String(name) + m_suffix + QStringLiteral(".png"));
    }

    QString m_folder;
    QString m_suffix;
    QTemporaryDir m_home;
    Config m_config;
    NoPanel m_panel;
    SettingsView m_window;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList words = app.arguments().mid(2);
    QDir().mkpath(app.arguments().value(1));
    LongTranslator longer;
    if (words.contains(QStringLiteral("dark")))
        QApplication::setPalette(darkPalette());
    if (words.contains(QStringLiteral("large"))) {
        QFont font = QApplication::font();
        font.setPointSize(20);
        QApplication::setFont(font);
    }
    if (words.contains(QStringLiteral("long")))
        QCoreApplication::installTranslator(&longer);
    QString suffix = words.isEmpty() ? QString() : u'-' + words.join(u'-');
    if (app.devicePixelRatio() > 1)
        suffix += QStringLiteral("@%1x").arg(app.devicePixelRatio());
    Gallery(app.arguments().value(1), suffix).draw();
    return 0;
}
