// SPDX-License-Identifier: MIT
#include "links/triggerscanner.h"

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace links {

namespace {

/// What must follow the byte at least; 0 for bytes that are no trigger.
constexpr unsigned char lowestAfter(char c)
{
    return c == ':' ? '!' : c == '.' || c == '@' ? '0' : 0;
}

std::uint64_t triggersOf(std::string_view text, std::size_t begin, std::size_t end)
{
    std::uint64_t mask = 0;
    for (std::size_t at = begin; at < end && at + 1 < text.size(); ++at) {
        const unsigned char lowest = lowestAfter(text[at]);
        mask |= std::uint64_t(lowest && static_cast<unsigned char>(text[at + 1]) >= lowest) << (at - begin);
    }
    return mask;
}

#if defined(__x86_64__)

/// Fills a mask for each whole 64 bytes of [text, end) that one more byte follows; returns how many.
std::size_t fillSse2(std::uint64_t *masks, const char *text, const char *end)
{
    const auto load = [](const char *from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
    };
    const __m128i colon = _mm_set1_epi8(':'), at = _mm_set1_epi8('@'), dot = _mm_set1_epi8('.');
    const __m128i lowestName = _mm_set1_epi8('0'), lowestRest = _mm_set1_epi8('!');
    const std::uint64_t *const first = masks;
    for (; end - text > 64; text += 64, ++masks) {
        *masks = 0;
        for (int part = 0; part < 4; ++part) {
            const __m128i here = load(text + 16 * part), after = load(text + 16 * part + 1);
            const __m128i names =
                _mm_and_si128(_mm_or_si128(_mm_cmpeq_epi8(here, at), _mm_cmpeq_epi8(here, dot)),
                              _mm_cmpeq_epi8(_mm_max_epu8(after, lowestName), after));
            const __m128i schemes = _mm_and_si128(_mm_cmpeq_epi8(here, colon),
                                                  _mm_cmpeq_epi8(_mm_max_epu8(after, lowestRest), after));
            *masks |= std::uint64_t(unsigned(_mm_movemask_epi8(_mm_or_si128(names, schemes)))) << (16 * part);
        }
    }
    return std::size_t(masks - first);
}

/// As fillSse2. The three triggers differ in the lower halves of their bytes, so one look-up by that half
/// gives the trigger a byte has to equal, and another what has to follow.
__attribute__((target("avx2"))) std::size_t fillAvx2(std::uint64_t *masks, const char *text, const char *end)
{
    const __m256i triggers =
        _mm256_broadcastsi128_si256(_mm_setr_epi8('@', 0, 0, 0, 0, 0, 0, 0, 0, 0, ':', 0, 0, 0, '.', 0));
    const __m256i lowest = _mm256_broadcastsi128_si256(_mm_setr_epi8(
        lowestAfter('@'), 0, 0, 0, 0, 0, 0, 0, 0, 0, lowestAfter(':'), 0, 0, 0, lowestAfter('.'), 0));
    const auto maskAt = [=](const char *from) __attribute__((target("avx2"), always_inline))
    {
        const __m256i here = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from));
        const __m256i after = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(from + 1));
        const __m256i isTrigger = _mm256_cmpeq_epi8(_mm256_shuffle_epi8(triggers, here), here);
        const __m256i follows =
            _mm256_cmpeq_epi8(_mm256_max_epu8(after, _mm256_shuffle_epi8(lowest, here)), after);
        return std::uint64_t(unsigned(_mm256_movemask_epi8(_mm256_and_si256(isTrigger, follows))));
    };
    const std::uint64_t *const first = masks;
    for (; end - text > 64; text += 64, ++masks)
        *masks = maskAt(text) | maskAt(text + 32) << 32;
    return std::size_t(masks - first);
}

const bool hasAvx2 = __builtin_cpu_supports("avx2");

#endif

} // namespace

void TriggerScanner::fill(std::size_t begin)
{
    m_begin = begin;
    m_end = begin;
#if defined(__x86_64__)
    const char *const from = m_text.data() + begin;
    const char *const to = from + std::min(m_text.size() - begin, 64 * (m_masks.size() - 1) + 1);
    m_end += 64 * (hasAvx2 ? fillAvx2(m_masks.data(), from, to) : fillSse2(m_masks.data(), from, to));
#endif
    if (m_end == begin) { // what is left at the text's end
        m_end = std::min(begin + 64, m_text.size());
        m_masks[0] = triggersOf(m_text, begin, m_end);
    }
    m_masks[(m_end - begin + 63) / 64] = 1;
}

} // namespace links
