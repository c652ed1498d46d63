#include "app/settings/Localisation.h"

namespace corvel {

namespace {

struct CountedPhrase {
    Text one;
    Text few;  // Polish: 2, 3, 4, 22 … but not 12, 13, 14
    Text many;
};

constexpr CountedPhrase kNotes{{"notatka", "note"}, {"notatki", "notes"}, {"notatek", "notes"}};
constexpr CountedPhrase kWords{{"słowo", "word"}, {"słowa", "words"}, {"słów", "words"}};

bool takesFewForm(std::int64_t count) {
    const auto units = count % 10;
    const auto tens = count % 100;
    return units >= 2 && units <= 4 && (tens < 12 || tens > 14);
}

const Text& formOf(const CountedPhrase& phrase, std::int64_t count) {
    if (count == 1) return phrase.one;
    return takesFewForm(count) ? phrase.few : phrase.many;
}

std::string counted(const Localisation& texts, const CountedPhrase& phrase, std::int64_t count) {
    return std::to_string(count) + " " + texts(formOf(phrase, count));
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

}  // namespace

std::string Localisation::format(const Text& text,
                                 const std::vector<std::string>& arguments) const {
    const std::string pattern = (*this)(text);
    std::string result;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool isPlace = pattern[i] == '%' && i + 1 < pattern.size() && pattern[i + 1] >= '1' &&
                             pattern[i + 1] <= '9';
        if (!isPlace) {
            result.push_back(pattern[i]);
            continue;
        }
        const auto number = static_cast<std::size_t>(pattern[++i] - '1');
        if (number < arguments.size()) result += arguments[number];
    }
    return result;
}

std::string Localisation::notes(std::int64_t count) const {
    return counted(*this, kNotes, count);
}

std::string Localisation::words(std::int64_t count) const {
    return counted(*this, kWords, count);
}

std::string withShortcutNames(std::string text) {
    replaceAll(text, "⌘", "Ctrl+");
    replaceAll(text, "⇧", "Shift+");
    return text;
}

}  // namespace corvel
