// SPDX-License-Identifier: MIT
// Makes the table behind isTopLevelDomain: maketopleveldomains <public suffix list> <file to write>
#include "../labelhash.h"

#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace {

/// The last label of every rule of the list's official section, international ones also in their ASCII form.
std::set<std::string> readLabels(std::istream &list)
{
    std::set<std::string> labels;
    bool official = false;
    for (std::string line; std::getline(list, line);) {
        if (line.find("===BEGIN ICANN DOMAINS===") != std::string::npos)
            official = true;
        else if (line.find("===END ICANN DOMAINS===") != std::string::npos)
            official = false;
        if (!official || line.empty() || line.starts_with("//"))
            continue;
        std::string label = line.substr(0, line.find_first_of(" \t"));
        label = label.substr(label.rfind('.') + 1);
        labels.insert(QUrl::toAce(QString::fromStdString(label)).toStdString());
        labels.insert(label);
    }
    return labels;
}

struct Table
{
    std::vector<std::uint32_t> seeds;
    std::vector<const std::string *> slots;
};

/// Gives each bucket the first seed that puts its labels into free slots, the fullest bucket first.
Table fileLabels(const std::set<std::string> &labels)
{
    Table table;
    std::uint32_t size = 1;
    while (size < labels.size() * 2)
        size *= 2;
    table.slots.resize(size);
    table.seeds.resize(size / 8);
    std::vector<std::vector<const std::string *>> buckets(table.seeds.size());
    for (const std::string &label : labels)
        buckets[links::labelHash(label) % buckets.size()].push_back(&label);
    std::vector<std::size_t> order(buckets.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::ranges::stable_sort(order, std::greater(), [&](std::size_t i) { return buckets[i].size(); });
    for (const std::size_t bucket : order) {
        for (std::uint32_t seed = 0;; ++seed) {
            if (seed == 1u << 20) // two labels with one hash: labelHash needs another start value
                std::abort();
            std::set<std::uint32_t> taken;
            const bool fits = std::ranges::all_of(buckets[bucket], [&](const std::string *label) {
                const std::uint32_t slot = links::labelSlot(links::labelHash(*label), seed, size);
                return !table.slots[slot] && taken.insert(slot).second;
            });
            if (!fits)
                continue;
            table.seeds[bucket] = seed;
            for (const std::string *label : buckets[bucket])
                table.slots[links::labelSlot(links::labelHash(*label), seed, size)] = label;
            break;
        }
    }
    return table;
}

void write(std::ostream &out, const Table &table)
{
    std::string bytes, offsets, lengths;
    std::size_t offset = 0, longest = 0;
    for (const std::string *label : table.slots) {
        offsets += std::to_string(offset) + ',';
        lengths += std::to_string(label ? label->size() : 0) + ',';
        if (!label)
            continue;
        for (const char c : *label)
            bytes += std::to_string(int(static_cast<signed char>(c))) + ',';
        offset += label->size();
        longest = std::max(longest, label->size());
    }
    out << "constexpr std::size_t longestLabel = " << longest
        << ";\nconstexpr std::uint32_t labelSeeds[] = {";
    for (const std::uint32_t seed : table.seeds)
        out << seed << ',';
    out << "};\nconstexpr std::uint16_t labelSlots[] = {" << offsets
        << "};\nconstexpr std::uint8_t labelLengths[] = {" << lengths
        << "};\nconstexpr signed char labelBytesSigned[] = {" << bytes
        << "};\nconst char *const labelBytes = reinterpret_cast<const char *>(labelBytesSigned);\n";
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    std::ifstream list(argv[1]);
    const std::set<std::string> labels = readLabels(list);
    if (labels.size() < 1000) {
        std::fprintf(stderr, "%s: no list of public suffixes\n", argv[1]);
        return 1;
    }
    std::ofstream out(argv[2]);
    write(out, fileLabels(labels));
    return out.flush() ? 0 : 1;
}
