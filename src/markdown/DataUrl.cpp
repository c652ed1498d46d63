#include "markdown/DataUrl.h"

#include <array>

namespace corvel {

namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Two digits for each 12 bits: half the look-ups, and 8 KB stay in the nearest cache.
constexpr std::array<std::array<char, 2>, 4096> kPairs = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = {kDigits[i >> 6U], kDigits[i & 63U]};
    return pairs;
}();

char* writePair(char* output, std::uint32_t bits) {
    *output++ = kPairs[bits][0];
    *output++ = kPairs[bits][1];
    return output;
}

void writeRest(char* output, std::span<const std::uint8_t> rest) {
    const std::uint32_t second = rest.size() > 1 ? rest[1] : 0U;
    const std::uint32_t bits = (std::uint32_t{rest[0]} << 16U) | (second << 8U);
    output = writePair(output, bits >> 12U);
    *output++ = rest.size() > 1 ? kDigits[(bits >> 6U) & 63U] : '=';
    *output = '=';
}

}  // namespace

std::string dataUrl(std::string_view mimeType, std::span<const std::uint8_t> bytes) {
    std::string url = "data:";
    url.append(mimeType).append(";base64,");
    const std::size_t head = url.size();
    url.resize(head + (bytes.size() + 2) / 3 * 4);
    char* output = url.data() + head;
    std::size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3) {
        const std::uint32_t bits =
            (std::uint32_t{bytes[i]} << 16U) | (std::uint32_t{bytes[i + 1]} << 8U) | bytes[i + 2];
        output = writePair(writePair(output, bits >> 12U), bits & 0xFFFU);
    }
    if (i < bytes.size()) writeRest(output, bytes.subspan(i));
    return url;
}

}  // namespace corvel
