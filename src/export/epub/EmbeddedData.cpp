#include "export/epub/EmbeddedData.h"

#include "platform/Uuid.h"

#include <charconv>
#include <string_view>

namespace corvel {

namespace {

constexpr std::string_view kSource = "\"data:image/";
constexpr std::size_t kLong = 512;

}  // namespace

std::string EmbeddedData::takeOut(const std::string& html) {
    m_mark = "data:image/x-" + Uuid::random().toString() + ",";
    const std::string_view text = html;
    std::string shortened;
    std::size_t copied = 0;
    for (std::size_t quote = text.find(kSource); quote != std::string_view::npos;
         quote = text.find(kSource, quote + 1)) {
        const std::size_t end = text.find('"', quote + 1);
        if (end == std::string_view::npos) break;
        if (end - quote < kLong) continue;
        const auto url = text.substr(quote + 1, end - quote - 1);
        if (url.find_first_of("<>& \n") != std::string_view::npos) continue;
        shortened.append(text, copied, quote + 1 - copied);
        shortened.append(m_mark).append(std::to_string(m_urls.size()));
        m_urls.emplace_back(url);
        copied = quote = end;
    }
    return shortened.append(text, copied);
}

std::string EmbeddedData::putBack(const std::string& html) const {
    if (m_urls.empty()) return html;
    const std::string_view text = html;
    std::string whole;
    std::size_t copied = 0;
    for (std::size_t mark = text.find(m_mark); mark != std::string_view::npos;
         mark = text.find(m_mark, copied)) {
        whole.append(text, copied, mark - copied);
        const char* digits = text.data() + mark + m_mark.size();
        std::size_t index = m_urls.size();
        const auto end = std::from_chars(digits, text.data() + text.size(), index).ptr;
        if (index < m_urls.size()) whole += m_urls[index];
        copied = static_cast<std::size_t>(end - text.data());
    }
    return whole.append(text, copied);
}

}  // namespace corvel
