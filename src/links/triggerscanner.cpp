// SPDX-License-Identifier: MIT
#include "links/triggerscanner.h"

#include "links/linkcharacters.h"

#include <bit>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace links {

namespace {

constexpr std::size_t blockSize = 64;

// Of mailto, geo; tel; sms, maps; xmpp.
constexpr bool endsShortScheme(char c)
{
    return isOneOf(char(c | 0x20), "olsp");
}

constexpr bool isNameByte(char c)
{
    return static_cast<unsigned char>(c) >= '0';
}

bool isTrigger(std::string_view text, std::size_t at)
{
    const char c = text[at];
    if ((c != ':' && c != '@' && c != '.') || at == 0 || at + 1 == text.size())
        return false;
    if (c == ':')
        return text[at + 1] == '/' || endsShortScheme(text[at - 1]);
    return isNameByte(text[at + 1]) && (c == '@' || isNameByte(text[at - 1]));
}

#if defined(__x86_64__)

/// Drops the colons that no slash follows unless they follow a short scheme's last letter.
std::uint64_t shortSchemesOnly(const char *block, std::uint64_t colons)
{
    std::uint64_t kept = 0;
    for (; colons; colons &= colons - 1) {
        const int at = std::countr_zero(colons);
        if (endsShortScheme(block[at - 1]))
            kept |= std::uint64_t(1) << at;
    }
    return kept;
}

/// The triggers among the 64 bytes from the first block in [block, last] that has a trigger byte; `block`
/// moves there, or past `last`. The bytes before and after each block must be readable.
std::uint64_t nextBlockSse2(const char *&block, const char *last)
{
    const auto load = [](const char *from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
    };
    const __m128i colon = _mm_set1_epi8(':'), at = _mm_set1_epi8('@'), dot = _mm_set1_epi8('.');
    const __m128i zero = _mm_set1_epi8('0'), slash = _mm_set1_epi8('/');
    for (; block <= last; block += blockSize) {
        std::uint64_t triggers = 0, colons = 0;
        for (int part = 0; part < 4; ++part) {
            const char *from = block + 16 * part;
            const __m128i here = load(from);
            const __m128i colonHere = _mm_cmpeq_epi8(here, colon), atHere = _mm_cmpeq_epi8(here, at);
            const __m128i dotHere = _mm_cmpeq_epi8(here, dot);
            if (!_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(colonHere, atHere), dotHere)))
                continue;
            const __m128i before = load(from - 1), after = load(from + 1);
            const __m128i nameBefore = _mm_cmpeq_epi8(_mm_max_epu8(before, zero), before);
            const __m128i nameAfter = _mm_cmpeq_epi8(_mm_max_epu8(after, zero), after);
            const __m128i names =
                _mm_and_si128(_mm_or_si128(atHere, _mm_and_si128(dotHere, nameBefore)), nameAfter);
            const __m128i schemes = _mm_and_si128(colonHere, _mm_cmpeq_epi8(after, slash));
            triggers |= std::uint64_t(unsigned(_mm_movemask_epi8(_mm_or_si128(names, schemes))))
                << (16 * part);
            colons |= std::uint64_t(unsigned(_mm_movemask_epi8(_mm_andnot_si128(schemes, colonHere))))
                << (16 * part);
        }
        triggers |= shortSchemesOnly(block, colons);
        if (triggers)
            return triggers;
    }
    return 0;
}

__attribute__((target("avx2"))) std::uint64_t nextBlockAvx2(const char *&block, const char *last)
{
    const __m256i colon = _mm256_set1_epi8(':'), at = _mm256_set1_epi8('@'), dot = _mm256_set1_epi8('.');
    const __m256i zero = _mm256_set1_epi8('0'), slash = _mm256_set1_epi8('/');
    for (; block <= last; block += blockSize) {
        std::uint64_t triggers = 0, colons = 0;
        for (int part = 0; part < 2; ++part) {
            const auto *from = reinterpret_cast<const __m256i *>(block + 32 * part);
            const __m256i here = _mm256_loadu_si256(from);
            const __m256i colonHere = _mm256_cmpeq_epi8(here, colon), atHere = _mm256_cmpeq_epi8(here, at);
            const __m256i dotHere = _mm256_cmpeq_epi8(here, dot);
            const __m256i any = _mm256_or_si256(_mm256_or_si256(colonHere, atHere), dotHere);
            if (_mm256_testz_si256(any, any))
                continue;
            const __m256i before =
                _mm256_loadu_si256(reinterpret_cast<const __m256i *>(block + 32 * part - 1));
            const __m256i after =
                _mm256_loadu_si256(reinterpret_cast<const __m256i *>(block + 32 * part + 1));
            const __m256i nameBefore = _mm256_cmpeq_epi8(_mm256_max_epu8(before, zero), before);
            const __m256i nameAfter = _mm256_cmpeq_epi8(_mm256_max_epu8(after, zero), after);
            const __m256i names =
                _mm256_and_si256(_mm256_or_si256(atHere, _mm256_and_si256(dotHere, nameBefore)), nameAfter);
            const __m256i schemes = _mm256_and_si256(colonHere, _mm256_cmpeq_epi8(after, slash));
            triggers |= std::uint64_t(unsigned(_mm256_movemask_epi8(_mm256_or_si256(names, schemes))))
                << (32 * part);
            colons |= std::uint64_t(unsigned(_mm256_movemask_epi8(_mm256_andnot_si256(schemes, colonHere))))
                << (32 * part);
        }
        triggers |= shortSchemesOnly(block, colons);
        if (triggers)
            return triggers;
    }
    return 0;
}

/// CheckByte by two table look-ups, one for each half of the byte: a bit stands for one of the rows 0x2_,
/// 0x3_, 0x5_, 0x6_, 0x7_, and one for the rows of which every byte counts.
__attribute__((target("avx2"))) std::size_t findCheckByteAvx2(const char *text, std::size_t at,
                                                              std::size_t end)
{
    enum : char { All = 1, Row2 = 2, Row3 = 4, Row5 = 8, Row6 = 16, Row7 = 32 };
    const __m128i rows =
        _mm_setr_epi8(All, All, Row2, Row3, 0, Row5, Row6, Row7, All, All, All, All, All, All, All, All);
    const __m128i columns =
        _mm_setr_epi8(All | Row2 | Row6, All, All | Row2, All, All, All, All | Row2, All | Row2, All | Row2,
                      All | Row2, All, All | Row3 | Row5 | Row7, All | Row2 | Row3 | Row5 | Row7,
                      All | Row5 | Row7, All | Row3, All | Row7);
    const __m256i high = _mm256_broadcastsi128_si256(rows), low = _mm256_broadcastsi128_si256(columns);
    const __m256i half = _mm256_set1_epi8(0x0F);
    for (; at + 32 <= end; at += 32) {
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(text + at));
        const __m256i byRow = _mm256_shuffle_epi8(high, _mm256_and_si256(_mm256_srli_epi16(bytes, 4), half));
        const __m256i byColumn = _mm256_shuffle_epi8(low, _mm256_and_si256(bytes, half));
        const __m256i plain = _mm256_cmpeq_epi8(_mm256_and_si256(byRow, byColumn), _mm256_setzero_si256());
        const unsigned check = ~unsigned(_mm256_movemask_epi8(plain));
        if (check)
            return at + std::size_t(std::countr_zero(check));
    }
    while (at < end && !hasClass(text[at], CheckByte))
        ++at;
    return at;
}

const bool hasAvx2 = __builtin_cpu_supports("avx2");

#endif

} // namespace

std::size_t TriggerScanner::next(std::size_t from)
{
    while (true) {
        if (from < m_next) {
            if (from > m_base)
                m_mask &= ~std::uint64_t(0) << (from - m_base);
            if (m_mask) {
                const int at = std::countr_zero(m_mask);
                m_mask &= m_mask - 1;
                return m_base + std::size_t(at);
            }
        }
        if (from < m_next)
            from = m_next;
        if (from >= m_text.size())
            return std::string_view::npos;
        fill(from);
    }
}

void TriggerScanner::fill(std::size_t base)
{
#if defined(__x86_64__)
    if (base > 0 && m_text.size() > blockSize && base < m_text.size() - blockSize) {
        const char *block = m_text.data() + base;
        const char *last = m_text.data() + m_text.size() - blockSize - 1;
        m_mask = hasAvx2 ? nextBlockAvx2(block, last) : nextBlockSse2(block, last);
        m_base = std::size_t(block - m_text.data());
        m_next = block <= last ? m_base + blockSize : m_base;
        return;
    }
#endif
    m_base = base;
    m_next = base + std::min(blockSize, m_text.size() - base);
    m_mask = 0;
    for (std::size_t at = m_base; at < m_next; ++at) {
        if (isTrigger(m_text, at))
            m_mask |= std::uint64_t(1) << (at - m_base);
    }
}

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

} // namespace links
