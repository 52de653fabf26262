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

__attribute__((target("avx2"))) inline unsigned maskOf(const ByteSet &set, __m256i bytes)
{
    const __m256i half = _mm256_set1_epi8(0x0F);
    const __m256i row = _mm256_shuffle_epi8(set.rows, _mm256_and_si256(_mm256_srli_epi16(bytes, 4), half));
    const __m256i column = _mm256_shuffle_epi8(set.columns, _mm256_and_si256(bytes, half));
    const __m256i none = _mm256_cmpeq_epi8(_mm256_and_si256(row, column), _mm256_setzero_si256());
    return ~unsigned(_mm256_movemask_epi8(none));
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

/// A bit for each of 64 bytes.
__attribute__((target("avx2"))) inline std::uint64_t equal64(__m256i low, __m256i high, char c)
{
    const __m256i wanted = _mm256_set1_epi8(c);
    return unsigned(_mm256_movemask_epi8(_mm256_cmpeq_epi8(low, wanted)))
        | std::uint64_t(unsigned(_mm256_movemask_epi8(_mm256_cmpeq_epi8(high, wanted)))) << 32;
}

__attribute__((target("avx2"))) std::size_t findCheckByteAvx2(const char *text, std::size_t at,
                                                              std::size_t end)
{
    const ByteSet set = checkBytes();
    for (; at + 32 <= end; at += 32) {
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(text + at));
        const unsigned found = maskOf(set, bytes)
            | unsigned(_mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, _mm256_set1_epi8('&'))));
        if (found)
            return at + std::size_t(std::countr_zero(found));
    }
    while (at < end && !hasClass(text[at], CheckByte))
        ++at;
    return at;
}

__attribute__((target("avx2"))) std::size_t plainWebAddressEndAvx2(std::string_view text, std::size_t at)
{
    const char *host = text.data() + at;
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(host));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(host + 32));
    const ByteSet nonHost = nonHostBytes();
    const std::uint64_t outside = maskOf(nonHost, low) | std::uint64_t(maskOf(nonHost, high)) << 32;
    if (!outside)
        return at;
    const int hostEnd = std::countr_zero(outside);
    const std::uint64_t inHost = (outside & (~outside + 1)) - 1;
    const std::uint64_t dots = equal64(low, high, '.') & inHost, hyphens = equal64(low, high, '-') & inHost;
    const std::uint64_t edges = dots << 1 | dots >> 1 | 1 | (inHost ^ inHost >> 1);
    if (!inHost || ((dots | hyphens) & edges))
        return at;

    const ByteSet set = checkBytes();
    const std::uint64_t check = maskOf(set, low) | std::uint64_t(maskOf(set, high)) << 32;
    const int plain = check ? std::countr_zero(check) : 64;
    if (hostEnd < plain && host[hostEnd] != '/' && host[hostEnd] != '?' && host[hostEnd] != '#')
        return at;
    std::uint64_t ampersands =
        equal64(low, high, '&') & (check ? (check & (~check + 1)) - 1 : ~std::uint64_t(0));
    for (; ampersands; ampersands &= ampersands - 1) {
        const std::size_t next = at + std::size_t(std::countr_zero(ampersands)) + 1;
        if (next == text.size() || isOneOf(text[next], "qlgan#")) // may be an entity
            return at;
    }
    const std::size_t end =
        check ? at + std::size_t(plain) : findCheckByteAvx2(text.data(), at + 64, text.size());
    const char last = text[end - 1];
    const bool ends = end == text.size() || hasClass(text[end], EndByte);
    return ends && (hasClass(last, AlnumByte) || last == '/' || last == '=') ? end : at;
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
