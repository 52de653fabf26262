// SPDX-License-Identifier: MIT
#include "links/plainaddress.h"

#include "links/linkcharacters.h"

#include <bit>
#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace links {

namespace {

#if defined(__x86_64__)

const bool hasAvx2 = __builtin_cpu_supports("avx2");

/// A set of bytes as two tables, one for each half of a byte: a byte belongs to it when the two have a bit in
/// common. A bit stands for the rows (first halves) that have the same columns.
struct ByteSet
{
    __m256i rows;
    __m256i columns;
};

enum : char { All = 1, Row2 = 2, Row3 = 4, Row46 = 8, Row5 = 16, Row6 = 32, Row7 = 64 };

/// The two halves of each byte.
struct Halves
{
    __m256i row;
    __m256i column;
};

__attribute__((target("avx2"))) inline Halves halvesOf(__m256i bytes)
{
    const __m256i half = _mm256_set1_epi8(0x0F);
    return {_mm256_and_si256(_mm256_srli_epi16(bytes, 4), half), _mm256_and_si256(bytes, half)};
}

__attribute__((target("avx2"))) inline std::uint32_t maskOf(const ByteSet &set, const Halves &bytes)
{
    const __m256i common = _mm256_and_si256(_mm256_shuffle_epi8(set.rows, bytes.row),
                                            _mm256_shuffle_epi8(set.columns, bytes.column));
    return ~std::uint32_t(_mm256_movemask_epi8(_mm256_cmpeq_epi8(common, _mm256_setzero_si256())));
}

__attribute__((target("avx2"))) inline std::uint32_t equal32(__m256i bytes, char c)
{
    return std::uint32_t(_mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(c))));
}

/// The bytes with CheckByte, save "&".
__attribute__((target("avx2"))) inline ByteSet checkBytes()
{
    const __m128i rows =
        _mm_setr_epi8(All, All, Row2, Row3, 0, Row5, Row6, Row7, All, All, All, All, All, All, All, All);
    const __m128i columns = _mm_setr_epi8(
        All | Row2 | Row6, All, All | Row2, All, All, All, All, All | Row2, All | Row2, All | Row2, All,
        All | Row3 | Row5 | Row7, All | Row2 | Row3 | Row5 | Row7, All | Row5 | Row7, All | Row3, All | Row7);
    return {_mm256_broadcastsi128_si256(rows), _mm256_broadcastsi128_si256(columns)};
}

/// All bytes but letters, digits, "-" and ".".
__attribute__((target("avx2"))) inline ByteSet nonHostBytes()
{
    constexpr char ends = All | Row2 | Row3 | Row5;
    const __m128i rows =
        _mm_setr_epi8(All, All, Row2, Row3, Row46, Row5, Row46, Row5, All, All, All, All, All, All, All, All);
    const __m128i columns =
        _mm_setr_epi8(All | Row2 | Row46, All | Row2, All | Row2, All | Row2, All | Row2, All | Row2,
                      All | Row2, All | Row2, All | Row2, All | Row2, All | Row2 | Row3, ends, ends,
                      All | Row3 | Row5, All | Row3 | Row5, ends);
    return {_mm256_broadcastsi128_si256(rows), _mm256_broadcastsi128_si256(columns)};
}

__attribute__((target("avx2"))) std::size_t findCheckByteAvx2(const char *text, std::size_t at,
                                                              std::size_t end)
{
    const ByteSet set = checkBytes();
    for (; at + 32 <= end; at += 32) {
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(text + at));
        const std::uint32_t found = maskOf(set, halvesOf(bytes)) | equal32(bytes, '&');
        if (found)
            return at + std::size_t(std::countr_zero(found));
    }
    while (at < end && !hasClass(text[at], CheckByte))
        ++at;
    return at;
}

__attribute__((target("avx2"))) std::size_t plainWebAddressEndAvx2(std::string_view text, std::size_t at)
{
    const char *const host = text.data() + at;
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(host));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(host + 32));
    const Halves lowHalves = halvesOf(low);

    // This comes first, since the search for the next address waits for it.
    const ByteSet set = checkBytes();
    const std::uint64_t check = maskOf(set, lowHalves) | std::uint64_t(maskOf(set, halvesOf(high))) << 32;
    std::size_t end = at + std::size_t(std::countr_zero(check));

    const std::uint32_t outside = maskOf(nonHostBytes(), lowHalves);
    const int hostEnd = std::countr_zero(outside | 1u << 31);
    const std::uint32_t inHost = (1u << hostEnd) - 1;
    const std::uint32_t dots = equal32(low, '.') & inHost, hyphens = equal32(low, '-') & inHost;
    const std::uint32_t edges = dots << 1 | dots >> 1 | 1 | (inHost ^ inHost >> 1);
    if (!inHost || ((dots | hyphens) & edges) || !hasClass(host[hostEnd], EndByte | TailByte))
        return at;

    std::uint64_t ampersands = equal32(low, '&') | std::uint64_t(equal32(high, '&')) << 32;
    for (ampersands &= check ^ (check - 1); ampersands; ampersands &= ampersands - 1) {
        const std::size_t next = at + std::size_t(std::countr_zero(ampersands)) + 1;
        if (next == text.size() || isOneOf(text[next], "qlgan#")) // may be an entity
            return at;
    }
    if (!check) // not before the host was found good: then a link is found, and no byte is looked at again
        end = findCheckByteAvx2(text.data(), end, text.size());
    const bool ends = end == text.size() || hasClass(text[end], EndByte);
    return ends && hasClass(text[end - 1], LastByte) ? end : at;
}

#endif

} // namespace

std::size_t findCheckByte(std::string_view text, std::size_t at, std::size_t end)
{
#if defined(__x86_64__)
    if (hasAvx2)
        return findCheckByteAvx2(text.data(), at, end);
#endif
    while (at < end && !hasClass(text[at], CheckByte))
        ++at;
    return at;
}

std::size_t plainWebAddressEnd(std::string_view text, std::size_t at)
{
#if defined(__x86_64__)
    if (hasAvx2 && text.size() - at > 64)
        return plainWebAddressEndAvx2(text, at);
#endif
    return at;
}

} // namespace links
