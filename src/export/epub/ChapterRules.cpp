#include "export/epub/ChapterRules.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace corvel::chapterrules {

namespace {

const std::unordered_map<std::string_view, Kind>& kinds() {
    static const auto table = [] {
        std::unordered_map<std::string_view, Kind> made;
        const auto add = [&made](Kind kind, std::initializer_list<std::string_view> names) {
            for (const auto name : names)
                made.emplace(name, kind);
        };
        add(Kind::phrasing,
            {"a",     "abbr", "b",      "br",    "cite", "code", "del", "dfn", "em",
             "i",     "img",  "ins",    "input", "kbd",  "mark", "q",   "s",   "samp",
             "small", "span", "strong", "sub",   "sup",  "u",    "var", "wbr"});
        add(Kind::paragraph, {"p", "h1", "h2", "h3", "h4", "h5", "h6", "pre", "caption"});
        add(Kind::flow, {"blockquote", "div"});
        add(Kind::list, {"ul", "ol"});
        add(Kind::item, {"li"});
        add(Kind::table, {"table"});
        add(Kind::tableSection, {"thead", "tbody", "tfoot"});
        add(Kind::row, {"tr"});
        add(Kind::cell, {"td", "th"});
        add(Kind::rule, {"hr"});
        add(Kind::dropped, {"script", "style", "template", "iframe",   "frame",    "frameset",
                            "object", "embed", "applet",   "video",    "audio",    "canvas",
                            "svg",    "math",  "select",   "textarea", "button",   "title",
                            "meta",   "link",  "base",     "param",    "source",   "track",
                            "map",    "area",  "noscript", "datalist", "progress", "meter"});
        return made;
    }();
    return table;
}

const std::unordered_map<std::string_view, std::string_view>& modernNames() {
    static const std::unordered_map<std::string_view, std::string_view> table{
        {"font", "span"},    {"tt", "code"},     {"strike", "s"},     {"big", "span"},
        {"acronym", "abbr"}, {"bdo", "span"},    {"bdi", "span"},     {"nobr", "span"},
        {"time", "span"},    {"label", "span"},  {"ruby", "span"},    {"center", "div"},
        {"section", "div"},  {"article", "div"}, {"aside", "div"},    {"header", "div"},
        {"footer", "div"},   {"main", "div"},    {"nav", "div"},      {"figure", "div"},
        {"figcaption", "p"}, {"details", "div"}, {"summary", "p"},    {"address", "div"},
        {"dl", "div"},       {"dt", "p"},        {"dd", "div"},       {"form", "div"},
        {"fieldset", "div"}, {"legend", "p"},    {"dir", "ul"},       {"menu", "ul"},
        {"listing", "pre"},  {"xmp", "pre"},     {"plaintext", "pre"}};
    return table;
}

bool isDigits(std::string_view text, std::size_t most) {
    return !text.empty() && text.size() <= most &&
           std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool isInteger(std::string_view text) {
    if (text.starts_with('-')) text.remove_prefix(1);
    return isDigits(text, 9);
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// A language tag's shape: letters, then groups of letters and digits.
bool isLanguage(std::string_view text) {
    if (text.empty() || text.size() > 35 || !isLetter(text.front()) || text.back() == '-')
        return false;
    const auto first = text.substr(0, text.find('-'));
    return first.size() <= 8 && std::ranges::all_of(first, isLetter) &&
           text.find("--") == std::string_view::npos && std::ranges::all_of(text, [](char c) {
               return isLetter(c) || c == '-' || (c >= '0' && c <= '9');
           });
}

/// "name: value; …" of plain words, numbers and colours, which no style parser can stumble over.
bool isPlainStyle(std::string_view style) {
    bool hasDeclaration = false;
    while (!style.empty()) {
        const auto end = std::min(style.find(';'), style.size());
        const auto declaration = style.substr(0, end);
        style.remove_prefix(std::min(end + 1, style.size()));
        if (declaration.find_first_not_of(" \t\n") == std::string_view::npos) continue;
        const auto colon = declaration.find(':');
        if (colon == std::string_view::npos) return false;
        const auto name = declaration.substr(0, colon);
        const auto value = declaration.substr(colon + 1);
        const bool isName = std::ranges::all_of(
            name, [](char c) { return isLetter(c) || c == '-' || c == ' ' || c == '\n'; });
        const bool isValue = std::ranges::all_of(value, [](char c) {
            return isLetter(c) || (c >= '0' && c <= '9') ||
                   std::string_view(" .,%#-").find(c) != std::string_view::npos;
        });
        if (!isName || !isValue || value.find_first_not_of(" ,") == std::string_view::npos) {
            return false;
        }
        hasDeclaration = true;
    }
    return hasDeclaration;
}

bool isOneOf(std::string_view value, std::initializer_list<std::string_view> values) {
    return std::ranges::find(values, value) != values.end();
}

}  // namespace

Kind kindOf(std::string_view element) {
    const auto found = kinds().find(element);
    return found == kinds().end() ? Kind::unknown : found->second;
}

std::string_view modernName(std::string_view element) {
    const auto found = modernNames().find(element);
    return found == modernNames().end() ? element : found->second;
}

bool isVoid(std::string_view element) {
    return isOneOf(element, {"br", "hr", "img", "input", "wbr"});
}

bool allowsAttribute(std::string_view element, std::string_view attribute, std::string_view value) {
    if (isOneOf(attribute, {"class", "title"})) return true;
    if (attribute == "style") return isPlainStyle(value);
    if (isOneOf(attribute, {"lang", "xml:lang"})) return isLanguage(value);
    if (attribute == "dir") return isOneOf(value, {"ltr", "rtl", "auto"});
    if (element == "img") {
        return attribute == "alt" ||
               (isOneOf(attribute, {"width", "height"}) && isDigits(value, 5));
    }
    if (element == "input") {
        return (attribute == "type" && value == "checkbox") ||
               (attribute == "disabled" && isOneOf(value, {"", "disabled"})) ||
               (attribute == "checked" && isOneOf(value, {"", "checked"}));
    }
    if (element == "ol") return attribute == "start" && isInteger(value);
    return false;
}

}  // namespace corvel::chapterrules
