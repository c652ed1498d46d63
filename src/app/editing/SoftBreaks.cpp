#include "app/editing/SoftBreaks.h"

#include <algorithm>

namespace corvel::editing {

namespace {

constexpr std::size_t kPiece = 4000;
constexpr std::size_t kPieceOfWord = 1000;

bool isInnerByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool isLong(std::string_view line) {
    if (line.size() > kLongestLine) return true;
    while (line.size() > kLongestWord) {
        const auto space = line.rfind(' ', kLongestWord);
        if (space == std::string_view::npos) return true;
        line.remove_prefix(space + 1);
    }
    return false;
}

bool hasLongLine(std::string_view text) {
    for (std::size_t start = 0; start < text.size();) {
        const auto end = std::min(text.find('\n', start), text.size());
        if (isLong(text.substr(start, end - start))) return true;
        start = end + 1;
    }
    return false;
}

/// Where the first piece of a line that is longer than a piece ends.
std::size_t endOfPiece(std::string_view line) {
    for (const auto longest : {kPiece, kPieceOfWord}) {
        const auto space = line.rfind(' ', longest - 1);
        if (space == std::string_view::npos || space < longest / 2) continue;
        if (!isLong(line.substr(0, space))) return space + 1;
    }
    std::size_t end = kPieceOfWord;
    while (end > 1 && isInnerByte(line[end]))
        --end;
    return end;
}

void appendInPieces(std::string& out, std::string_view line) {
    while (isLong(line) || line.size() > kPiece) {
        const auto end = endOfPiece(line);
        out.append(line.substr(0, end)).append(kSoftBreak);
        line.remove_prefix(end);
    }
    out.append(line);
}

}  // namespace

std::optional<std::string> withSoftBreaks(std::string_view text) {
    if (!hasLongLine(text) || text.find(kSoftBreak) != std::string_view::npos) return std::nullopt;
    std::string out;
    out.reserve(text.size() + text.size() / kPieceOfWord * 2 * kSoftBreak.size());
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size() - 1) + 1;
        const auto line = text.substr(0, end);
        if (isLong(line)) {
            appendInPieces(out, line);
        } else {
            out.append(line);
        }
        text.remove_prefix(end);
    }
    return out;
}

std::string withoutSoftBreaks(std::string text) {
    auto at = text.find(kSoftBreak);
    if (at == std::string::npos) return text;
    std::string out;
    out.reserve(text.size());
    std::size_t begin = 0;
    for (; at != std::string::npos; at = text.find(kSoftBreak, begin)) {
        out.append(text, begin, at - begin);
        begin = at + kSoftBreak.size();
    }
    return out.append(text, begin);
}

}  // namespace corvel::editing
