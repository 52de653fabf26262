// SPDX-License-Identifier: MIT
// linkscan [--time N] FILE: the links of a text file, one absolute address a line; with --time the median
// seconds of N searches over its bytes in memory, and nothing else.
#include "links/linkdetector.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>

namespace {

std::optional<std::string> readFile(const char *path)
{
    std::ifstream file(path, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(file), {});
    if (!file)
        return std::nullopt;
    return text;
}

double medianSeconds(const std::string &text, int runs)
{
    std::vector<double> seconds;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const std::vector<links::Link> found = links::findLinks(text);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        seconds.push_back(found.size() > text.size() ? 0
                                                     : taken.count()); // keeps the search from being left out
    }
    std::ranges::sort(seconds);
    return seconds[seconds.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    const bool timed = argc == 4 && std::string_view(argv[1]) == "--time";
    const int runs = timed ? std::atoi(argv[2]) : 0;
    if ((argc != 2 && !timed) || (timed && runs < 1)) {
        std::fprintf(stderr, "usage: linkscan [--time N] FILE\n");
        return 2;
    }
    const std::optional<std::string> text = readFile(argv[argc - 1]);
    if (!text) {
        std::fprintf(stderr, "%s: cannot be read\n", argv[argc - 1]);
        return 1;
    }
    if (timed) {
        std::printf("%.6f\n", medianSeconds(*text, runs));
        return 0;
    }
    for (const links::Link &link : links::findLinks(*text))
        std::printf("%s\n", links::absoluteAddress(*text, link).c_str());
    return 0;
}
