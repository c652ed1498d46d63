#include "platform/TextFinder.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <utility>
#include <vector>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace corvel {

namespace {

// Bytes of folded text from common to rare; what is not named is rarer still.
constexpr std::string_view kCommon = " aeoinztrscwdlkmypujgbh.f,-v\n\xC4\xC5:#/)('*_1203=>\"xq";
// Beyond this length the worst case of the vector search would hurt.
constexpr std::size_t kLongest = 64;

std::size_t commonness(char byte) {
    const std::size_t place = kCommon.find(byte);
    return place == kCommon.npos ? 0 : kCommon.size() - place;
}

}  // namespace

TextFinder::TextFinder(std::string sought) : m_sought(std::move(sought)) {
    if (m_sought.size() < 2 || m_sought.size() > kLongest) return;
    chooseBytes();
    m_scan = bestScan();
}

void TextFinder::chooseBytes() {
    std::vector<std::size_t> offsets(m_sought.size());
    std::iota(offsets.begin(), offsets.end(), std::size_t{0});
    std::ranges::stable_sort(offsets, {},
                             [this](std::size_t i) { return commonness(m_sought[i]); });
    m_first = offsets[0];
    m_second = offsets[1];
    m_third = offsets[std::min<std::size_t>(2, offsets.size() - 1)];
}

bool TextFinder::isAt(const char* place) const {
    return place[m_third] == m_sought[m_third] &&
           std::memcmp(place, m_sought.data(), m_sought.size()) == 0;
}

std::size_t TextFinder::findIn(std::string_view text, std::size_t from) const {
    if (from > text.size() || text.size() - from < m_sought.size()) return text.npos;
    if (m_sought.empty()) return from;
    const char* start = text.data() + from;
    const char* end = text.data() + text.size();
    const char* found = m_scan != nullptr
                            ? m_scan(*this, start, end)
                            : static_cast<const char*>(memmem(start, text.size() - from,
                                                              m_sought.data(), m_sought.size()));
    return found == nullptr ? text.npos : static_cast<std::size_t>(found - text.data());
}

#if defined(__x86_64__)

const char* TextFinder::scanNarrow(const TextFinder& finder, const char* from, const char* end) {
    constexpr std::size_t kSize = sizeof(__m128i);
    const auto load = [](const char* place) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(place));
    };
    const auto x = _mm_set1_epi8(finder.m_sought[finder.m_first]);
    const auto y = _mm_set1_epi8(finder.m_sought[finder.m_second]);
    const std::size_t reach = kSize + finder.m_sought.size();
    for (; static_cast<std::size_t>(end - from) >= reach; from += kSize) {
        const auto both = _mm_and_si128(_mm_cmpeq_epi8(load(from + finder.m_first), x),
                                        _mm_cmpeq_epi8(load(from + finder.m_second), y));
        auto places = static_cast<std::uint32_t>(_mm_movemask_epi8(both));
        for (; places != 0; places &= places - 1) {
            const char* place = from + __builtin_ctz(places);
            if (finder.isAt(place)) return place;
        }
    }
    const std::string_view rest(from, static_cast<std::size_t>(end - from));
    const std::size_t place = rest.find(finder.m_sought);
    return place == rest.npos ? nullptr : from + place;
}

// The same with vectors of 32 bytes, for processors that have them.
__attribute__((target("avx2"))) const char* TextFinder::scanWide(const TextFinder& finder,
                                                                 const char* from,
                                                                 const char* end) {
    constexpr std::size_t kSize = 64;
    const auto x = _mm256_set1_epi8(finder.m_sought[finder.m_first]);
    const auto y = _mm256_set1_epi8(finder.m_sought[finder.m_second]);
    const std::size_t reach = kSize + finder.m_sought.size();
    for (; static_cast<std::size_t>(end - from) >= reach; from += kSize) {
        const auto* a = reinterpret_cast<const __m256i*>(from + finder.m_first);
        const auto* b = reinterpret_cast<const __m256i*>(from + finder.m_second);
        const auto low = _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(a), x),
                                          _mm256_cmpeq_epi8(_mm256_loadu_si256(b), y));
        const auto high = _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(a + 1), x),
                                           _mm256_cmpeq_epi8(_mm256_loadu_si256(b + 1), y));
        const auto either = _mm256_or_si256(low, high);
        if (_mm256_testz_si256(either, either) != 0) continue;
        auto places = static_cast<std::uint32_t>(_mm256_movemask_epi8(low)) |
                      std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(high))} << 32;
        for (; places != 0; places &= places - 1) {
            const char* place = from + __builtin_ctzll(places);
            if (finder.isAt(place)) return place;
        }
    }
    return scanNarrow(finder, from, end);
}

TextFinder::Scan TextFinder::bestScan() {
    static const bool isWide = __builtin_cpu_supports("avx2") != 0;
    return isWide ? &scanWide : &scanNarrow;
}

#else

TextFinder::Scan TextFinder::bestScan() {
    return nullptr;
}

#endif

}  // namespace corvel
