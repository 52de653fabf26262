// SPDX-License-Identifier: MIT
// What a start costs, beside that of a bare window with 22 pictures ("floor"), the two taking turns.
//   start [ROUNDS [ROW]]: of the rows, only the one whose name holds the text
#include "table.h"
#include "trial.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <utility>

using namespace bench;

namespace {

constexpr int memoryRounds = 3; // memory hardly differs between starts

struct Row
{
    QString name;
    Strip strip;
    double reach = 1.15; // times the floor; 0 for none
    bool isFloor = false;
    QByteArray desktop = {}; // XDG_CURRENT_DESKTOP
    QList<double> cpu = {}; // ms to the finished picture
    QList<double> cpuLater = {}; // ms to 5 s
    QList<double> memory = {}; // MiB at 5 s
    double instructions = 0; // millions
};

/// Instructions of one start under callgrind until the expected picture is there, in millions.
double instructionsOf(Trial &trial, const QStringList &command, const QProcessEnvironment &environment,
                      size_t picture)
{
    const QTemporaryDir folder;
    const QString log = folder.filePath(QStringLiteral("log"));
    const QStringList counted =
        QStringList{QStringLiteral("valgrind"), QStringLiteral("--tool=callgrind"),
                    QStringLiteral("--callgrind-out-file=/dev/null"), QStringLiteral("--log-file=") + log}
        + command;
    const Trial::Shown shown = trial.start(counted, picture, &environment);
    trial.end(*shown.process);
    QFile file(log);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const auto total =
        QRegularExpression(QStringLiteral("Collected : (\\d+)")).match(QString::fromUtf8(file.readAll()));
    return total.captured(1).toDouble() / 1e6;
}

void measure(Trial &trial, Row &row, int round)
{
    QStringList command;
    if (row.isFloor) {
        command = trial.floor();
    } else {
        trial.write(row.strip);
        command = trial.program();
    }
    QProcessEnvironment environment = trial.desktop().environment();
    if (!row.desktop.isEmpty())
        environment.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QString::fromUtf8(row.desktop));
    QElapsedTimer time;
    time.start();
    const Trial::Shown shown = trial.start(command, std::nullopt, &environment);
    if (round > 0) // the first start fills caches
        row.cpu.append(shown.cpu);
    if (round < memoryRounds) {
        QTest::qWait(int(std::max<qint64>(0, 5000 - time.elapsed())));
        row.memory.append(memoryOf(shown.process->processId(), "Pss:"));
        row.cpuLater.append(cpuOf(shown.process->processId()));
    }
    trial.end(*shown.process);
    if (round == memoryRounds)
        row.instructions = instructionsOf(trial, command, environment, shown.picture);
}

struct Idle
{
    int switches = 0; // voluntary ones, of all threads
    double cpu = 0; // ms
    qint64 calls = 0; // reads and writes
};

QByteArray processFile(qint64 pid, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

qint64 numberAfter(const QByteArray &text, const char *word)
{
    const qsizetype at = text.indexOf(word);
    return at < 0 ? 0 : text.mid(at + qsizetype(qstrlen(word))).simplified().split(' ').first().toLongLong();
}

Idle idleOf(qint64 pid)
{
    Idle idle;
    const QStringList threads =
        QDir(QStringLiteral("/proc/%1/task").arg(pid)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads)
        idle.switches +=
            int(numberAfter(processFile(thread.toLongLong(), "status"), "\nvoluntary_ctxt_switches:"));
    idle.cpu = cpuOf(pid);
    const QByteArray io = processFile(pid, "io");
    idle.calls = numberAfter(io, "syscr:") + numberAfter(io, "syscw:");
    return idle;
}

/// A minute of nothing, 10 s after the start. Threads that end meanwhile take their switches along.
void measureIdle(Trial &trial)
{
    Table table(QStringLiteral("A minute of nothing"),
                {QStringLiteral("program"), QStringLiteral("voluntary switches"), QStringLiteral("reach"),
                 QStringLiteral("CPU, ms"), QStringLiteral("reach"), QStringLiteral("reads and writes")});
    trial.write({});
    for (const auto &[name, command] : {std::pair(QStringLiteral("pondwicket"), trial.program()),
                                        {QStringLiteral("floor"), trial.floor()}}) {
        const Trial::Shown shown = trial.start(command);
        const qint64 pid = shown.process->processId();
        QTest::qWait(10'000);
        const Idle before = idleOf(pid);
        QTest::qWait(60'000);
        const Idle after = idleOf(pid);
        table.row({name, QString::number(after.switches - before.switches), QStringLiteral("2"),
                   number(after.cpu - before.cpu, 2), QStringLiteral("1"),
                   QString::number(after.calls - before.calls)});
        trial.end(*shown.process);
    }
}

bool hasGtkTheme()
{
    return QFile::exists(QLibraryInfo::path(QLibraryInfo::PluginsPath)
                         + QStringLiteral("/platformthemes/libqgtk3.so"));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const int rounds = argc > 1 ? std::max(memoryRounds + 1, QByteArray(argv[1]).toInt()) : 11;
    QList<Row> rows = {
        {.name = QStringLiteral("floor"), .strip = {}, .reach = 0, .isFloor = true},
        {.name = QStringLiteral("theme 2024"), .strip = {}, .reach = 1},
        {.name = QStringLiteral("theme 1995"), .strip = {.theme = QStringLiteral("1995")}},
        {.name = QStringLiteral("vertical"), .strip = {.direction = QStringLiteral("ttb")}},
        {.name = QStringLiteral("calendar"), .strip = {.showsDate = true}},
        {.name = QStringLiteral("1,000 links in every tile"), .strip = {.linksPerTile = 1000}},
        {.name = QStringLiteral("10,000 links in every tile"), .strip = {.linksPerTile = 10'000}, .reach = 0},
        {.name = QStringLiteral("100,000 tiles"), .strip = {.tiles = 100'000, .linksPerTile = 0}, .reach = 0},
    };
    if (hasGtkTheme())
        rows.append({.name = QStringLiteral("GNOME"),
                     .strip = {},
                     .reach = 1.2,
                     .desktop = QByteArrayLiteral("GNOME")});

    const QString wanted = QString::fromLocal8Bit(argc > 2 ? argv[2] : "");
    rows.removeIf([&](const Row &row) { return !row.isFloor && !row.name.contains(wanted); });

    Trial trial;
    Row &floor = rows.first();
    // A row has all its starts in turn with the floor's, so that it finds the pictures that it saved itself.
    for (qsizetype i = 1; i < rows.size(); ++i) {
        for (int round = 0; round <= rounds; ++round) {
            if (i == 1 || round > memoryRounds)
                measure(trial, floor, round);
            measure(trial, rows[i], round);
        }
    }

    Table table(QStringLiteral("Start with 20 tiles, medians of %1").arg(rounds),
                {QStringLiteral("start"), QStringLiteral("CPU to the picture, ms"),
                 QStringLiteral("by floor"), QStringLiteral("reach"), QStringLiteral("instructions, M"),
                 QStringLiteral("by floor"), QStringLiteral("CPU to 5 s, ms"),
                 QStringLiteral("PSS at 5 s, MiB"), QStringLiteral("over floor, MiB")});
    for (const Row &row : std::as_const(rows)) {
        table.row({row.name, number(median(row.cpu), 1), number(median(row.cpu) / median(floor.cpu), 2),
                   row.reach > 0 ? number(row.reach, 2) : QString(), number(row.instructions, 1),
                   number(row.instructions / floor.instructions, 2), number(median(row.cpuLater), 1),
                   number(median(row.memory), 1), number(median(row.memory) - median(floor.memory), 1)});
    }
    if (wanted.isEmpty())
        measureIdle(trial);
    return 0;
}
