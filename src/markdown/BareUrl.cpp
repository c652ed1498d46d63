#include "markdown/BareUrl.h"

#include "markdown/PatternSpace.h"

namespace corvel {

namespace {

bool endsUrl(std::string_view text, std::size_t position) {
    switch (text[position]) {
        case '<':
        case '>':
        case '"':
        case '\'':
            return true;
        default:
            return spaceLengthAt(text, position) != 0;
    }
}

}  // namespace

std::optional<TextSpan> findBareUrl(std::string_view text, std::size_t from) {
    for (std::size_t begin = text.find("http", from); begin != std::string_view::npos;
         begin = text.find("http", begin + 1)) {
        std::size_t end = begin + 4;
        if (text.substr(end, 1) == "s") ++end;
        if (text.substr(end, 3) != "://") continue;
        end += 3;
        const std::size_t rest = end;
        while (end < text.size() && !endsUrl(text, end))
            ++end;
        if (end > rest) return TextSpan{begin, end};
    }
    return std::nullopt;
}

}  // namespace corvel
