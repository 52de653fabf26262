// SPDX-License-Identifier: MIT
// A process that saves without end is killed at a moment of chance. PW_KILLS: how often, 100 without it.
#include "model/safetycopies.h"
#include "model/settingsstore.h"
#include "platform/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <csignal>
#include <functional>
#include <random>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

class TestKill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savesSurvive()
    {
        const QTemporaryDir folder;
        Config config(folder.filePath(QStringLiteral("Documents")), folder.filePath(QStringLiteral("state")));
        QDir().mkpath(config.documentDirectory());
        TileItem tile;
        tile.tileDirectory = QStringLiteral("file:///nowhere");
        tile.tileMenuItems.resize(200); // large enough to be caught in the middle
        const auto numberIn = [](const QString &path) {
            const auto data = model::readSettingsFile(path, nullptr);
            return data ? data->tileItems.constFirst().tileName.toInt() : -1;
        };
        int broken = 0;
        killOften(
            [&](int number) {
                tile.tileName = QString::number(number);
                config.setTileItems({tile});
                model::saveSettings(config);
            },
            [&](int whole) {
                int number = numberIn(model::settingsFileURL(config));
                if (number < 0) {
                    ++broken;
                    number = numberIn(model::lastGoodPath(config.stateDirectory()));
                }
                return number == whole || number == whole + 1;
            });
        qInfo("%d times the settings were in pieces and the last good ones whole", broken);
    }

    void notesSurvive()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("Notes.txt"));
        const auto noteOf = [](int number) {
            return QByteArray::number(number) + QByteArray(20'000 + number % 1000, 'n') + '.';
        };
        killOften(
            [&](int number) {
                // Forked processes draw the same names for their new files, and a killed one leaves its own.
                while (!platform::writeAtomically(path, noteOf(number), nullptr)) { }
            },
            [&](int whole) {
                const QByteArray note = platform::readWholeFile(path, nullptr).value_or(QByteArray());
                return note == noteOf(whole) || note == noteOf(whole + 1);
            });
    }

private:
    /// Lets `write` write states that follow one another, kills it, and hands `check` the number of the last
    /// state that was written whole; `next` may be there already, or a part of it.
    void killOften(const std::function<void(int next)> &write, const std::function<bool(int whole)> &check)
    {
        const int rounds =
            qEnvironmentVariableIsSet("PW_KILLS") ? qEnvironmentVariableIntValue("PW_KILLS") : 100;
        // How many writes have ended, told by the process that writes to the one that kills it.
        using Counter = std::atomic<int>;
        Counter &whole =
            *new (::mmap(nullptr, sizeof(Counter), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
                Counter(0);
        write(0);
        std::mt19937 random(20240229);
        for (int round = 0; round < rounds; ++round) {
            const int start = whole;
            const pid_t writer = ::fork();
            if (writer == 0) {
                for (;; ++whole)
                    write(whole + 1);
            }
            // The moment counts from a whole write, or half of the kills would meet the start of the process.
            while (whole == start) { }
            ::usleep(std::uniform_int_distribution<useconds_t>(0, 5000)(random));
            ::kill(writer, SIGKILL);
            ::waitpid(writer, nullptr, 0);
            QVERIFY2(check(whole), qPrintable(QStringLiteral("lost at kill %1").arg(round)));
            // The next process goes on from what is there.
            write(whole);
        }
        qInfo("%d writes, %d kills", whole.load(), rounds);
    }
};

QTEST_GUILESS_MAIN(TestKill)
#include "tst_kill.moc"
