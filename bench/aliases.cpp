// SPDX-License-Identifier: MIT
// What following an alias costs, each figure beside a plain system call's or a plain walk's in the same run.
// "aliases [ENTRIES]": the size of the home folder that is searched, 1,000,000 when not given.
#include "table.h"

#include "platform/aliasresolver.h"
#include "platform/report.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace platform;
using Clock = std::chrono::steady_clock;

constexpr int bigFolder = 10'000; // entries
constexpr int smallFolder = 100; // entries of each folder in the large tree

double seconds(Clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

/// The calling thread's own time on a processor: what a busy machine does not lengthen.
double processorTime()
{
    timespec now;
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

double timed(const std::function<void()> &deed)
{
    const Clock::time_point start = Clock::now();
    deed();
    return seconds(Clock::now() - start);
}

double best(int rounds, const std::function<double()> &round)
{
    double least = round();
    for (int i = 1; i < rounds; ++i)
        least = std::min(least, round());
    return least;
}

void check(bool holds, const char *what)
{
    if (holds)
        return;
    report(QLatin1String("wrong: ") + QLatin1String(what));
    std::exit(EXIT_FAILURE);
}

void tell(bench::Table &table, const char *what, double value, std::optional<double> limit = std::nullopt)
{
    table.row(
        {QString::fromLatin1(what), bench::number(value, 3), limit ? QString::number(*limit) : QString()});
}

class Tree
{
public:
    QByteArray at(const QByteArray &name) const { return QFile::encodeName(m_root.path()) + '/' + name; }
    void folder(const QByteArray &name) const { check(::mkdir(at(name).constData(), 0700) == 0, "mkdir"); }
    void file(const QByteArray &name) const
    {
        const int descriptor = ::open(at(name).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        check(descriptor >= 0, "open");
        ::close(descriptor);
    }
    void move(const QByteArray &from, const QByteArray &to) const
    {
        check(::rename(at(from).constData(), at(to).constData()) == 0, "rename");
    }
    std::unique_ptr<AliasResolver> resolver() const
    {
        return std::make_unique<AliasResolver>(AliasResolver::Places{at("home"), {at("home")}});
    }
    /// Resolves the alias; its time in seconds. Giving up, as on a busy machine, counts as an hour.
    double resolve(AliasResolver &resolver, const QByteArray &expected) const
    {
        std::optional<AliasTarget> target;
        const double time = timed([&] { target = resolver.resolve(at("home/alias"), nullptr); });
        if (!target)
            return expected.isEmpty() ? time : 3600;
        check(target->path == at(expected), "target");
        return time;
    }

private:
    QTemporaryDir m_root{QCoreApplication::applicationDirPath() + QLatin1String("/tree-XXXXXX")};
};

void measureStanding(const Tree &tree, bench::Table &table)
{
    constexpr int calls = 20'000;
    const QByteArray target = tree.at("home/work/part/target");
    const auto resolver = tree.resolver();

    ::usleep(100'000); // until the file times are old enough to be trusted
    double plain = 1;
    double resolving = 1;
    for (int round = 0; round < 7; ++round) {
        plain = std::min(plain, timed([&] {
                             struct stat status;
                             for (int i = 0; i < calls; ++i)
                                 check(::stat(target.constData(), &status) == 0, "stat");
                         }));
        resolving = std::min(resolving, timed([&] {
                                 const QByteArray alias = tree.at("home/alias");
                                 for (int i = 0; i < calls; ++i)
                                     check(resolver->resolve(alias, nullptr).has_value(), "resolve");
                             }));
    }
    tell(table, "one stat, us", plain / calls * 1e6);
    tell(table, "target where it was, in plain stats", resolving / plain, 4);
}

void measureMoves(const Tree &tree, bench::Table &table)
{
    constexpr int rounds = 9;
    const QByteArray first = "home/work/part/target";
    tell(table, "renamed in a folder of 10,000, ms",
         1e3
             * best(rounds,
                    [&] {
                        tree.move(first, "home/work/part/renamed");
                        const double time = tree.resolve(*tree.resolver(), "home/work/part/renamed");
                        tree.move("home/work/part/renamed", first);
                        return time;
                    }),
         5);
    tell(table, "parent renamed in a folder of 10,000, ms",
         1e3
             * best(rounds,
                    [&] {
                        tree.move("home/work/part", "home/work/renamed");
                        const double time = tree.resolve(*tree.resolver(), "home/work/renamed/target");
                        tree.move("home/work/renamed", "home/work/part");
                        return time;
                    }),
         5);
    const auto resolver = tree.resolver();
    tell(table, "moved anywhere while the program runs, ms",
         1e3
             * best(rounds,
                    [&] {
                        tree.resolve(*resolver, first);
                        tree.move(first, "home/other");
                        const double time = tree.resolve(*resolver, "home/other");
                        tree.move("home/other", first);
                        return time;
                    }),
         1);
}

/// As plain as can be: nothing but opening and reading folders, depth first.
qint64 walk(int folder)
{
    alignas(dirent64) char buffer[64 * 1024];
    qint64 count = 0;
    for (ssize_t length; (length = ::getdents64(folder, buffer, sizeof buffer)) > 0;) {
        for (ssize_t at = 0; at < length;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(buffer + at);
            at += entry->d_reclen;
            ++count;
            if (entry->d_type != DT_DIR || entry->d_name[0] == '.')
                continue;
            const int below =
                ::openat(folder, entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            if (below >= 0) {
                count += walk(below);
                ::close(below);
            }
        }
    }
    return count;
}

void measureSearch(const Tree &tree, int entries, bench::Table &table)
{
    // Three levels of folders; the target's new place is among those that are read last.
    QByteArray last;
    const int folders = entries / (smallFolder + 1);
    const int width = std::max(1, int(std::sqrt(double(folders))));
    for (int i = 0; i < folders; ++i) {
        if (i % width == 0)
            tree.folder("home/f" + QByteArray::number(i / width));
        last = "home/f" + QByteArray::number(i / width) + "/g" + QByteArray::number(i % width);
        tree.folder(last);
        for (int n = 0; n < smallFolder; ++n)
            tree.file(last + "/file" + QByteArray::number(n));
    }
    tree.move("home/work/part/target", last + "/moved");

    double plain = 1e9;
    double searching = 1e9;
    double stall = 0;
    double busy = 0;
    qint64 count = 0;
    for (int round = 0; round < 4; ++round) {
        const int root = ::open(tree.at("home").constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        plain = std::min(plain, timed([&] { count = walk(root); }));
        ::close(root);
        const auto resolver = tree.resolver();
        searching = std::min(searching, timed([&] {
                                 const double before = processorTime();
                                 stall = std::max(stall, tree.resolve(*resolver, {}));
                                 busy = std::max(busy, processorTime() - before);
                                 resolver->waitForSearch();
                                 stall = std::max(stall, tree.resolve(*resolver, last + "/moved"));
                             }));
    }
    tell(table, "entries that are searched", double(count));
    tell(table, "a plain walk of them, ms", plain * 1e3);
    tell(table, "moved while not running, in plain walks", searching / plain, 1.5);
    tell(table, "the interface thread stalls, ms", stall * 1e3, 20);
    tell(table, "of that it works, ms", busy * 1e3, 20);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Tree tree;
    for (const char *folder : {"home", "home/work", "home/work/part"})
        tree.folder(folder);
    for (int i = 0; i < bigFolder; ++i) {
        tree.file("home/work/part/file" + QByteArray::number(i));
        tree.file("home/work/file" + QByteArray::number(i));
    }
    tree.file("home/work/part/target");
    check(writeAliasFile(tree.at("home/work/part/target"), tree.at("home/alias"), nullptr), "alias");
    bench::Table table(QStringLiteral("Following an alias"),
                       {QStringLiteral("what"), QStringLiteral("figure"), QStringLiteral("at most")});
    measureStanding(tree, table);
    measureMoves(tree, table);
    measureSearch(tree, argc > 1 ? QByteArray(argv[1]).toInt() : 1'000'000, table);
    return EXIT_SUCCESS;
}
