#include "markdown/HtmlWords.h"

#include "platform/Ascii.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>

namespace corvel {

namespace {

constexpr std::array<std::string_view, 32> kOnOwnLine{
    "address",    "article", "aside",  "blockquote", "caption", "center", "dd",      "details",
    "div",        "dl",      "dt",     "fieldset",   "figure",  "footer", "form",    "h1",
    "h2",         "h3",      "h4",     "h5",         "h6",      "header", "hr",      "li",
    "figcaption", "ol",      "option", "p",          "section", "table",  "summary", "tr"};

template <std::size_t Size>
bool isOneOf(const std::array<std::string_view, Size>& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

bool isNameCharacter(char character) {
    return ascii::isLetter(character) || (character >= '0' && character <= '9');
}

/// Of a tag from its bracket on, in small letters; empty when it is none.
std::string nameOf(std::string_view tag) {
    std::string name;
    for (std::size_t at = tag.starts_with("</") ? 2 : 1;
         at < tag.size() && isNameCharacter(tag[at]) && name.size() < 16; ++at) {
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(tag[at])));
    }
    return name;
}

void startLine(std::string& text) {
    while (text.ends_with(' '))
        text.pop_back();
    if (!text.empty() && !text.ends_with('\n')) text += '\n';
}

std::size_t behind(std::string_view html, std::string_view mark) {
    const std::size_t found = html.find(mark);
    return found == std::string_view::npos ? html.size() : found + mark.size();
}

/// Where what a tag hides ends: at the tag of its end, whose letters may be small or not.
std::size_t endOfHidden(std::string_view html, const std::string& name) {
    for (std::size_t at = html.find("</"); at != std::string_view::npos;
         at = html.find("</", at + 2)) {
        if (nameOf(html.substr(at)) == name) return at;
    }
    return html.size();
}

/// Returns the length of the tag that `html` begins with, and of what it hides.
std::size_t passTag(std::string& text, std::string_view html) {
    if (html.starts_with("<!--")) return behind(html, "-->");
    const std::size_t length = behind(html, ">");
    const std::string name = nameOf(html);
    const bool isEnd = html.starts_with("</");
    if (name == "br") {
        text += '\n';
    } else if (isOneOf(kOnOwnLine, name)) {
        startLine(text);
    } else if ((name == "td" || name == "th") && !isEnd) {
        if (!text.empty() && !text.ends_with('\n')) text += "  ";
    } else if ((name == "script" || name == "style") && !isEnd) {
        return length + endOfHidden(html.substr(length), name);
    }
    return length;
}

/// A line begins with a word.
void appendWords(std::string& text, std::string_view words) {
    if (text.empty() || text.ends_with('\n')) {
        words.remove_prefix(std::min(words.find_first_not_of(" \t\r\n"), words.size()));
    }
    text += words;
}

}  // namespace

void appendHtmlWords(std::string& text, std::string_view html) {
    while (!html.empty()) {
        const std::size_t open = std::min(html.find('<'), html.size());
        appendWords(text, html.substr(0, open));
        html.remove_prefix(open);
        if (!html.empty()) html.remove_prefix(passTag(text, html));
    }
}

}  // namespace corvel
