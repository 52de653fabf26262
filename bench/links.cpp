// SPDX-License-Identifier: MIT
// How fast links are found: three texts beside a bare scan of the same bytes, texts made to be slow, and the
// import of a large file.
#include "table.h"

#include "links/linkdetector.h"
#include "links/linkimport.h"
#include "model/settingsstore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <bit>
#include <chrono>
#include <functional>
#include <random>

#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

constexpr std::size_t megabyte = 1000 * 1000;
constexpr int runs = 7;

/// The time that this thread has run, so that a busy machine does not change the figures much.
double threadSeconds()
{
    timespec time;
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

double medianSeconds(const std::function<void()> &work)
{
    std::vector<double> seconds;
    for (int i = 0; i < runs; ++i) {
        const double start = threadSeconds();
        work();
        seconds.push_back(threadSeconds() - start);
    }
    std::ranges::sort(seconds);
    return seconds[runs / 2];
}

// -- texts
// ------------------------------------------------------------------------------------------------------------

class Writer
{
public:
    std::string word()
    {
        static constexpr const char *syllables[] = {"ka",  "lo",  "mi",  "ten", "ra",  "vor", "el", "is",
                                                    "sto", "pan", "dre", "um",  "qui", "nel", "ba", "ter"};
        std::string text;
        for (int n = number(1, 4); n > 0; --n)
            text += syllables[number(0, 15)];
        return text;
    }

    std::string address()
    {
        static constexpr const char *endings[] = {"com", "org", "net", "de", "co.uk", "io", "fr", "info"};
        std::string text = number(0, 9) ? "https://" : "http://";
        if (number(0, 1))
            text += "www.";
        text += word() + '.' + endings[number(0, 7)];
        for (int n = number(1, 4); n > 0; --n)
            text += '/' + word();
        if (number(0, 3) == 0)
            text += "?" + word() + '=' + std::to_string(number(1, 99999));
        return text;
    }

    /// A sentence with what sentences have: capitals, commas, times, decimals, abbreviations.
    std::string sentence()
    {
        std::string text;
        for (int n = number(6, 18); n > 0; --n) {
            const int kind = number(0, 199);
            text += text.empty() ? "The " : kind < 12 ? ", " : " ";
            if (kind == 20)
                text += std::to_string(number(1, 99)) + '.' + std::to_string(number(1, 99));
            else if (kind == 21)
                text += std::to_string(number(1, 12)) + ':' + std::to_string(number(10, 59));
            else if (kind == 22)
                text += "e.g.";
            else
                text += word();
        }
        return text + ". ";
    }

    int number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_random); }

private:
    std::mt19937 m_random{20240229};
};

std::string prose(std::size_t size)
{
    Writer writer;
    std::string text;
    for (std::size_t next = 5000; text.size() < size;) {
        text += writer.sentence();
        if (text.size() >= next) {
            text += "See " + writer.address() + " for more.\n";
            next += 5000;
        }
    }
    return text;
}

std::string linkLines(std::size_t size)
{
    Writer writer;
    std::string text;
    while (text.size() < size)
        text += writer.address() + '\n';
    return text;
}

std::string markup(std::size_t size)
{
    Writer writer;
    std::string text;
    while (text.size() < size) {
        text += "<div class=\"" + writer.word() + "\" style=\"margin: 0.5em; color:#333\">\n  <p>"
            + writer.sentence() + writer.sentence() + "</p>\n  <a href=\"" + writer.address()
            + "\" rel=\"nofollow\">" + writer.word() + "</a>\n  <img src=\"/img/" + writer.word()
            + ".png\" alt=\"\">\n</div>\n";
    }
    return text;
}

// -- the bare scan
// ----------------------------------------------------------------------------------------------------

/// Looks for ":", "@" and "." and does nothing else: counts them, or visits each and adds up where it stands,
/// as a search that hands out its hits does.
enum class BareScan { Count, Visit };

std::size_t scanBytes(std::string_view text, std::size_t begin, BareScan scan)
{
    std::size_t result = 0;
    for (std::size_t i = begin; i < text.size(); ++i) {
        if (text[i] == ':' || text[i] == '@' || text[i] == '.')
            result += scan == BareScan::Count ? 1 : i;
    }
    return result;
}

#if defined(__x86_64__)
__attribute__((target("avx2,popcnt"))) std::size_t scanAvx2(std::string_view text, BareScan scan)
{
    const __m256i colon = _mm256_set1_epi8(':'), at = _mm256_set1_epi8('@'), dot = _mm256_set1_epi8('.');
    std::size_t result = 0, i = 0;
    for (; i + 32 <= text.size(); i += 32) {
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(text.data() + i));
        const __m256i hits =
            _mm256_or_si256(_mm256_or_si256(_mm256_cmpeq_epi8(bytes, colon), _mm256_cmpeq_epi8(bytes, at)),
                            _mm256_cmpeq_epi8(bytes, dot));
        auto mask = unsigned(_mm256_movemask_epi8(hits));
        if (scan == BareScan::Count)
            result += std::size_t(_mm_popcnt_u32(mask));
        else
            for (; mask; mask &= mask - 1)
                result += i + std::size_t(std::countr_zero(mask));
    }
    return result + scanBytes(text, i, scan);
}
#endif

std::size_t bareScan(std::string_view text, BareScan scan)
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return scanAvx2(text, scan);
#endif
    return scanBytes(text, 0, scan);
}

void measureTexts()
{
    bench::Table table(QStringLiteral("Links found in 50 MB of text, ms on a processor"),
                       {QStringLiteral("text"), QStringLiteral("links"), QStringLiteral("search, ms"),
                        QStringLiteral("scan that counts, ms"), QStringLiteral("ratio"),
                        QStringLiteral("reach"), QStringLiteral("scan that visits, ms"),
                        QStringLiteral("ratio")});
    const std::tuple<const char *, std::string (*)(std::size_t), double> texts[] = {
        {"prose, a link in 5 KB", prose, 0.7}, {"a link a line", linkLines, 0.25}, {"HTML", markup, 0.45}};
    for (const auto &[name, make, wanted] : texts) {
        const std::string text = make(50 * megabyte);
        std::size_t hits = 0, found = 0;
        const double count = medianSeconds([&] { hits += bareScan(text, BareScan::Count); });
        const double visit = medianSeconds([&] { hits += bareScan(text, BareScan::Visit); });
        const double search = medianSeconds([&] { found = links::findLinks(text).size(); });
        table.row({QString::fromLatin1(name), QString::number(found), bench::number(search * 1e3, 2),
                   bench::number(count * 1e3, 2), bench::number(hits ? count / search : 0, 2),
                   bench::number(wanted, 2), bench::number(visit * 1e3, 2),
                   bench::number(visit / search, 2)});
    }
}

// -- texts made to be slow
// --------------------------------------------------------------------------------------------

void measureWorstCases()
{
    bench::Table table(QStringLiteral("Texts made to be slow, ms on a processor"),
                       {QStringLiteral("pattern, repeated"), QStringLiteral("256 KB"), QStringLiteral("1 MB"),
                        QStringLiteral("growth")});
    const std::pair<const char *, std::string> patterns[] = {
        {"((((", "("},
        {"http://(((", "http://x/((("},
        {"a.a.a.", "a."},
        {"@@@@", "@"},
        {"a@a@", "a@"},
        {"a@a.a@a.", "a@a."},
        {"http://", "http://"},
        {"http://a ", "http://a "},
        {"www.", "www."},
        {"www.a.", "www.a."},
        {"one word", "a"},
        {"a://", "a://"},
        {"://", "://"},
        {":/", ":/"},
        {"mailto:", "mailto:"},
        {"geo:1/", "geo:1/"},
        {"xmpp:a/", "xmpp:a/"},
        {"a.com@", "a.com@"},
        {"a.com(", "a.com("},
        {"http://u:p@", "http://u:p@"},
        {"http://[::", "http://[::"},
        {"a.com/,http://", "a.com/,http://"},
        {"http://a/&quot", "http://a/&quot"},
        {"http://a/?&a;", "http://a/?&a;"},
        {"é.", "é."},
        {"http://é/中", "http://é/中"},
        {"one path past ASCII", "中"},
        {"65 letters and @", std::string(65, 'a') + '@'},
        {"254 letters and .com", std::string(254, 'a') + ".com"},
        {"http://127 user bytes", "http://" + std::string(127, ':')}};
    for (const auto &[name, unit] : patterns) {
        double seconds[2];
        for (int large = 0; large < 2; ++large) {
            std::string text;
            if (std::string_view(name).starts_with("one path"))
                text = "http://a/";
            while (text.size() < (large ? 1024u : 256u) * 1024)
                text += unit;
            seconds[large] = medianSeconds([&text] { links::findLinks(text); });
        }
        table.row({u'`' + QString::fromUtf8(name) + u'`', bench::number(seconds[0] * 1e3, 3),
                   bench::number(seconds[1] * 1e3, 3), bench::number(seconds[1] / seconds[0], 1)});
    }
}

// -- import
// -----------------------------------------------------------------------------------------------------------

std::string importText()
{
    Writer writer;
    std::string text;
    for (int link = 0; link < 200000; ++link) {
        text += writer.address() + '/' + std::to_string(link) + ' ';
        while (text.size() < std::size_t(link + 1) * 500)
            text += writer.sentence();
        text += '\n';
    }
    return text;
}

/// In a process of its own, so that its peak is the import's.
void measureImport()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("links.txt"));
    const pid_t writer = ::fork();
    if (writer == 0) {
        QFile file(path);
        const std::string text = importText();
        ::_exit(file.open(QIODevice::WriteOnly) && file.write(text.data(), qint64(text.size())) > 0 ? 0 : 1);
    }
    ::waitpid(writer, nullptr, 0);
    const qint64 size = QFile(path).size();
    const pid_t importer = ::fork();
    if (importer == 0) {
        QDir(dir.path()).mkpath(QStringLiteral("Documents"));
        Config config(dir.filePath(QStringLiteral("Documents")), dir.filePath(QStringLiteral("state")));
        config.setTileItems({TileItem()});
        const QUuid id = config.tileItems().constFirst().id;
        const auto start = std::chrono::steady_clock::now();
        links::importLinksFromPath(config, id, path);
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        rusage usage;
        ::getrusage(RUSAGE_SELF, &usage);
        {
            bench::Table table(QStringLiteral("Import of a text"),
                               {QStringLiteral("MB"), QStringLiteral("links"), QStringLiteral("s"),
                                QStringLiteral("reach"), QStringLiteral("peak memory by size"),
                                QStringLiteral("reach")});
            table.row({bench::number(double(size) / megabyte, 0),
                       QString::number(config.tileItems().constFirst().tileMenuItems.size()),
                       bench::number(seconds, 2), QStringLiteral("1.5"),
                       bench::number(double(usage.ru_maxrss) * 1024 / double(size), 1), QStringLiteral("6")});
        }
        ::_exit(0);
    }
    ::waitpid(importer, nullptr, 0);
}

} // namespace

int main()
{
    measureImport(); // first: a child begins with the memory of its parent
    measureTexts();
    measureWorstCases();
    return 0;
}
