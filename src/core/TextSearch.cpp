// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"

#if defined(__x86_64__)
#include <immintrin.h>
#define RELAY_VECTOR_SEARCH 1
#endif

namespace relay {

namespace {

constexpr bool isUpper(char c) noexcept {
    return c >= 'A' && c <= 'Z';
}
constexpr bool isLower(char c) noexcept {
    return c >= 'a' && c <= 'z';
}
constexpr char lower(char c) noexcept {
    return isUpper(c) ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool equalFolded(const char* a, const char* b, std::size_t length) noexcept {
    for (std::size_t i = 0; i < length; ++i)
        if (a[i] != b[i] && lower(a[i]) != lower(b[i])) return false;
    return true;
}

// The first match starting from `begin` to `end` (exclusive), tested one by one.
std::size_t searchPlain(const char* hay, std::size_t begin, std::size_t end,
                        std::string_view needle) noexcept {
    const char first = lower(needle.front());
    for (std::size_t at = begin; at < end; ++at)
        if (lower(hay[at]) == first && equalFolded(hay + at + 1, needle.data() + 1, needle.size() - 1))
            return at;
    return npos;
}

#ifdef RELAY_VECTOR_SEARCH

// A byte equals a letter in either case exactly when the byte with bit 5 set equals the small letter; other
// characters are compared directly.
constexpr char foldBit(char c) noexcept {
    return isUpper(c) || isLower(c) ? 0x20 : 0;
}

// The first marked place where the whole needle matches; its first and last byte are known to match.
inline std::size_t verify(const char* hay, std::size_t block, unsigned long long marks,
                          std::string_view needle) noexcept {
    for (; marks != 0; marks &= marks - 1) {
        const std::size_t at = block + static_cast<std::size_t>(__builtin_ctzll(marks));
        if (needle.size() <= 2 || equalFolded(hay + at + 1, needle.data() + 1, needle.size() - 2)) return at;
    }
    return npos;
}

std::size_t searchSse2(const char* hay, std::size_t begin, std::size_t end,
                       std::string_view needle) noexcept {
    constexpr std::size_t kWidth = 16;
    if (end - begin < kWidth) return searchPlain(hay, begin, end, needle);
    const std::size_t lastOffset = needle.size() - 1;
    const __m128i first = _mm_set1_epi8(lower(needle.front()));
    const __m128i last = _mm_set1_epi8(lower(needle.back()));
    const __m128i firstFold = _mm_set1_epi8(foldBit(needle.front()));
    const __m128i lastFold = _mm_set1_epi8(foldBit(needle.back()));
    const auto marksAt = [&](std::size_t at) {
        const auto* head = reinterpret_cast<const __m128i*>(hay + at);
        const auto* tail = reinterpret_cast<const __m128i*>(hay + at + lastOffset);
        const __m128i heads = _mm_cmpeq_epi8(_mm_or_si128(_mm_loadu_si128(head), firstFold), first);
        const __m128i tails = _mm_cmpeq_epi8(_mm_or_si128(_mm_loadu_si128(tail), lastFold), last);
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(heads, tails)));
    };
    std::size_t at = begin;
    for (; at + kWidth <= end; at += kWidth) {
        const std::size_t found = verify(hay, at, marksAt(at), needle);
        if (found != npos) return found;
    }
    if (at == end) return npos;
    // The last block overlaps the one before it, so that nothing outside the text is read.
    return verify(hay, end - kWidth, marksAt(end - kWidth), needle);
}

__attribute__((target("avx2"))) inline __m256i marksAvx2(const char* head, const char* tail, __m256i first,
                                                         __m256i firstFold, __m256i last,
                                                         __m256i lastFold) noexcept {
    const __m256i heads = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(head));
    const __m256i tails = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(tail));
    return _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_or_si256(heads, firstFold), first),
                            _mm256_cmpeq_epi8(_mm256_or_si256(tails, lastFold), last));
}

__attribute__((target("avx2"))) inline unsigned long long bitsAvx2(__m256i marks) noexcept {
    return static_cast<unsigned>(_mm256_movemask_epi8(marks));
}

__attribute__((target("avx2"))) std::size_t searchAvx2(const char* hay, std::size_t begin, std::size_t end,
                                                       std::string_view needle) noexcept {
    constexpr std::size_t kWidth = 32;
    if (end - begin < kWidth) return searchSse2(hay, begin, end, needle);
    const __m256i first = _mm256_set1_epi8(lower(needle.front()));
    const __m256i last = _mm256_set1_epi8(lower(needle.back()));
    const __m256i firstFold = _mm256_set1_epi8(foldBit(needle.front()));
    const __m256i lastFold = _mm256_set1_epi8(foldBit(needle.back()));
    const char* const tail = hay + needle.size() - 1;
    std::size_t at = begin;
    // Four blocks share one test: most text holds no candidates.
    for (; at + 4 * kWidth <= end; at += 4 * kWidth) {
        __m256i marks[4];
        for (std::size_t i = 0; i < 4; ++i)
            marks[i] =
                marksAvx2(hay + at + i * kWidth, tail + at + i * kWidth, first, firstFold, last, lastFold);
        const __m256i any =
            _mm256_or_si256(_mm256_or_si256(marks[0], marks[1]), _mm256_or_si256(marks[2], marks[3]));
        if (_mm256_testz_si256(any, any)) continue;
        for (std::size_t half = 0; half < 4; half += 2) {
            const unsigned long long bits = bitsAvx2(marks[half]) | bitsAvx2(marks[half + 1]) << kWidth;
            const std::size_t found = verify(hay, at + half * kWidth, bits, needle);
            if (found != npos) return found;
        }
    }
    for (; at < end; at += kWidth) {
        // The last block overlaps the one before it, so that nothing outside the text is read.
        const std::size_t block = at + kWidth <= end ? at : end - kWidth;
        const __m256i marks = marksAvx2(hay + block, tail + block, first, firstFold, last, lastFold);
        const std::size_t found = verify(hay, block, bitsAvx2(marks), needle);
        if (found != npos) return found;
    }
    return npos;
}

#endif

using Search = std::size_t (*)(const char*, std::size_t, std::size_t, std::string_view) noexcept;

Search chosenSearch() noexcept {
#ifdef RELAY_VECTOR_SEARCH
    return __builtin_cpu_supports("avx2") ? searchAvx2 : searchSse2;
#else
    return searchPlain;
#endif
}

std::size_t search(std::string_view hay, std::string_view needle, std::size_t from, Search way) noexcept {
    if (from > hay.size() || needle.size() > hay.size() - from) return npos;
    if (needle.empty()) return from;
    return way(hay.data(), from, hay.size() - needle.size() + 1, needle);
}

}  // namespace

std::size_t findNoCase(std::string_view hay, std::string_view needle, std::size_t from) noexcept {
    static const Search kWay = chosenSearch();
    return search(hay, needle, from, kWay);
}

std::size_t findNoCasePortable(std::string_view hay, std::string_view needle, std::size_t from) noexcept {
    return search(hay, needle, from, searchPlain);
}

}  // namespace relay
