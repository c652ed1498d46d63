#include "markdown/EmailImages.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

namespace corvel {

namespace {

constexpr std::string_view kStart = "src=\"data:image/";
constexpr std::string_view kSource = "src=\"";
constexpr std::string_view kEncoding = ";base64,";

bool isTypeLetter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '+' ||
           letter == '.' || letter == '-' || letter == '/';
}

bool isBase64Letter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '+' || letter == '/' || letter == '=';
}

struct DataUrl {
    std::string_view mimeType;
    std::string_view base64;
};

// A note can hold any address: what becomes a header must be nothing but a type.
std::optional<DataUrl> parse(std::string_view url) {
    url.remove_prefix(std::string_view("data:").size());
    const std::size_t encoding = url.find(kEncoding);
    if (encoding == std::string_view::npos) return std::nullopt;
    const DataUrl data{url.substr(0, encoding), url.substr(encoding + kEncoding.size())};
    const bool isSound = data.mimeType.size() < 64 && !data.base64.empty() &&
                         std::ranges::all_of(data.mimeType, isTypeLetter) &&
                         std::ranges::all_of(data.base64, isBase64Letter);
    return isSound ? std::optional(data) : std::nullopt;
}

}  // namespace

EmailImages EmailImages::takenFrom(std::string_view html) {
    EmailImages taken;
    std::unordered_map<std::string_view, std::string> known;  // content ids by their URL
    std::size_t copied = 0;
    for (auto at = html.find(kStart); at != std::string_view::npos;) {
        const std::size_t begin = at + kSource.size();
        const std::size_t end = html.find('"', begin);
        if (end == std::string_view::npos) break;
        const std::string_view url = html.substr(begin, end - begin);
        at = html.find(kStart, end);
        const auto data = parse(url);
        if (!data) continue;
        const auto [entry, isNew] = known.try_emplace(url);
        if (isNew) {
            entry->second = "image" + std::to_string(known.size()) + "@qno-corvel";
            taken.images.push_back(
                {entry->second, std::string(data->mimeType), std::string(data->base64)});
        }
        taken.html.append(html.substr(copied, begin - copied)).append("cid:").append(entry->second);
        copied = end;
    }
    taken.html += html.substr(copied);
    return taken;
}

}  // namespace corvel
