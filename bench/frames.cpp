// SPDX-License-Identifier: MIT
// What drawing costs: the strip with 20 tiles beside as many ready pictures, and each frame of hiding and
// showing the tiles.
#include "table.h"

#include "links/openlink.h"
#include "model/config.h"
#include "platform/filepanel.h"
#include "strip/contentview.h"
#include "strip/services.h"
#include "themes/imagecatalog.h"
#include "themes/themestore.h"

#include <QApplication>
#include <QPainter>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int tiles = 20;
constexpr int side = 44; // points
constexpr int rounds = 201;
constexpr int animations = 40;
constexpr double frameTime = 1000.0 / 60; // ms

class NoOpener : public links::LinkOpener
{
public:
    void openFile(const QString &) override { }
    void openAddress(const QString &) override { }
};

class Picture : public QWidget
{
public:
    Picture(const QPixmap &pixmap, QWidget *parent)
        : QWidget(parent)
        , m_pixmap(pixmap)
    {
        resize(side, side);
    }

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).drawPixmap(0, 0, m_pixmap); }

private:
    QPixmap m_pixmap;
};

/// Sums up what events cost, frame by frame: the timer of the animation begins one.
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *object, QEvent *event) override
    {
        if (m_depth == 0 && event->type() == QEvent::Timer)
            frames.append(0);
        const double start = bench::processorTime();
        ++m_depth;
        const bool taken = QApplication::notify(object, event);
        if (--m_depth == 0 && !frames.isEmpty())
            frames.last() += bench::processorTime() - start;
        return taken;
    }

    QList<double> frames; // ms on a processor

private:
    int m_depth = 0;
};

QList<double> repaints(QWidget &window, const std::function<void()> &prepare)
{
    QList<double> costs;
    for (int i = 0; i < rounds; ++i) {
        const double start = bench::processorTime();
        prepare();
        window.update();
        for (auto *child : window.findChildren<QWidget *>())
            child->update();
        QCoreApplication::processEvents();
        costs.append(bench::processorTime() - start);
    }
    return costs;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The plugin tells at every frame what it cannot do.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    Application app(argc, argv);
    const QTemporaryDir home;
    qputenv("XDG_CACHE_HOME", home.path().toUtf8());
    Config config(home.path(), home.filePath(QStringLiteral("state")));
    themes::installBuiltInThemes(config);
    const QStringList icons = themes::builtInIconNames(config.currentTheme());
    QList<TileItem> items(tiles);
    for (qsizetype i = 0; i < tiles; ++i)
        items[i].iconName = icons.at(i % icons.size());
    config.setTileItems(items);
    NoOpener opener;
    const std::unique_ptr<platform::FilePanel> panel = platform::makeFilePanel();
    StripServices services{opener, *panel, [] {}};
    ContentView strip(config, services);
    strip.setAttribute(Qt::WA_TranslucentBackground);
    strip.resize(strip.sizeHint());
    strip.show();
    QCoreApplication::processEvents();

    QWidget plain;
    plain.resize(strip.size());
    plain.setAttribute(Qt::WA_TranslucentBackground);
    for (int i = 0; i < tiles + 2; ++i)
        (new Picture(QPixmap::fromImage(themes::builtInImage(QStringLiteral("2024-tile"), 1)), &plain))
            ->move(i * side, 0);
    plain.show();
    QCoreApplication::processEvents();
    {
        bench::Table table(QStringLiteral("Drawing the whole strip, warm, ms on a processor"),
                           {QStringLiteral("what"), QStringLiteral("ms"),
                            QStringLiteral("22 ready pictures, ms"), QStringLiteral("ratio"),
                            QStringLiteral("reach")});
        const double floor = bench::median(repaints(plain, [] {}));
        const auto row = [&](const char *what, const QList<double> &costs) {
            table.row({QString::fromLatin1(what), bench::number(bench::median(costs), 3),
                       bench::number(floor, 3), bench::number(bench::median(costs) / floor, 2),
                       QStringLiteral("1.5")});
        };
        row("painted again", repaints(strip, [] {}));
        row("its pictures asked for again, and painted", repaints(strip, [&] { strip.redraw(); }));
    }

    QList<double> all;
    int late = 0;
    for (int i = 0; i < animations; ++i) {
        app.frames.clear();
        strip.setTabsVisible(i % 2 == 1);
        QTimer end;
        end.setSingleShot(true);
        QEventLoop loop;
        QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
        end.start(400);
        loop.exec();
        app.frames.removeLast(); // that of our own timer
        all += app.frames;
    }
    std::sort(all.begin(), all.end());
    late = int(std::count_if(all.cbegin(), all.cend(), [](double cost) { return cost > frameTime; }));
    bench::Table table(QStringLiteral("Frames of hiding and showing %1 tiles, ms on a processor").arg(tiles),
                       {QStringLiteral("frames"), QStringLiteral("median"), QStringLiteral("95 %"),
                        QStringLiteral("longest"), QStringLiteral("reach"),
                        QStringLiteral("longer than 1/60 s")});
    table.row({QString::number(all.size()), bench::number(bench::median(all), 2),
               bench::number(all.value(all.size() * 95 / 100), 2), bench::number(all.last(), 2),
               QStringLiteral("4"), QString::number(late)});
    return 0;
}
