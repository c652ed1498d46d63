#include "support/TextGenerator.h"

#include <algorithm>
#include <array>

namespace corvel {

namespace {

constexpr std::array<std::string_view, 64> kPolish{
    "notatka", "żółw",   "rzeka",     "książka", "wieczór",  "droga",   "miasto",    "słowo",
    "praca",   "dzień",  "spotkanie", "projekt", "źródło",   "pomysł",  "zdanie",    "lista",
    "ogród",   "śnieg",  "wiosna",    "łódź",    "góra",     "chleb",   "okno",      "światło",
    "pamięć",  "podróż", "plan",      "budżet",  "rozmowa",  "pytanie", "odpowiedź", "cisza",
    "i",       "w",      "na",        "z",       "do",       "że",      "się",       "jest",
    "oraz",    "przez",  "między",    "jeszcze", "zawsze",   "nigdy",   "potem",     "dlatego",
    "zielony", "stary",  "nowy",      "cichy",   "ważny",    "długi",   "krótki",    "zimny",
    "pisać",   "czytać", "myśleć",    "zacząć",  "skończyć", "wrócić",  "zobaczyć",  "znaleźć"};
constexpr std::array<std::string_view, 64> kEnglish{
    "note",    "river",    "book",     "evening", "road",      "city",    "word",    "work",
    "meeting", "project",  "source",   "idea",    "list",      "garden",  "snow",    "spring",
    "boat",    "mountain", "bread",    "window",  "light",     "memory",  "journey", "plan",
    "budget",  "talk",     "question", "answer",  "silence",   "morning", "harbour", "letter",
    "and",     "in",       "on",       "with",    "to",        "that",    "the",     "is",
    "through", "between",  "still",    "always",  "never",     "then",    "because", "of",
    "green",   "old",      "new",      "quiet",   "important", "long",    "short",   "cold",
    "write",   "read",     "think",    "begin",   "finish",    "return",  "see",     "find"};

constexpr std::size_t kMostWordsInTitle = 6;
constexpr std::size_t kMostSentences = 6;
constexpr std::size_t kMostItems = 7;

}  // namespace

TextGenerator::TextGenerator(std::uint64_t seed,
                             Language language,
                             const std::vector<std::string>& tagPaths)
    : m_engine(seed), m_language(language), m_tagPaths(tagPaths) {}

std::string_view TextGenerator::word() {
    const auto& words = m_language == Language::polish ? kPolish : kEnglish;
    return words[below(words.size())];
}

std::string TextGenerator::title() {
    std::string text(word());
    for (std::size_t more = 1 + below(kMostWordsInTitle - 1); more > 0; --more) {
        text.append(" ").append(word());
    }
    return text;
}

std::string TextGenerator::sentence() {
    std::string text(word());
    for (std::size_t more = 4 + below(14); more > 0; --more) {
        text += ' ';
        switch (below(40)) {
            case 0:
                text.append("**").append(word()).append("**");
                break;
            case 1:
                text.append("*").append(word()).append("*");
                break;
            case 2:
                text.append("[").append(word()).append("](https://example.org/").append(word());
                text += ')';
                break;
            case 3:
                text.append("`").append(word()).append("`");
                break;
            default:
                text.append(word());
        }
    }
    return text + ".";
}

std::string TextGenerator::paragraph() {
    std::string text = sentence();
    for (std::size_t more = below(kMostSentences); more > 0; --more) {
        text.append(" ").append(sentence());
    }
    return text + "\n";
}

std::string TextGenerator::list() {
    static constexpr std::array<std::string_view, 3> kMarkers{"- ", "1. ", "- [ ] "};
    const auto marker = kMarkers[below(kMarkers.size())];
    std::string text;
    for (std::size_t items = 2 + below(kMostItems - 1); items > 0; --items) {
        text.append(marker).append(sentence()).append("\n");
    }
    return text;
}

std::string TextGenerator::code() {
    std::string text = "```cpp\n";
    for (std::size_t lines = 2 + below(8); lines > 0; --lines) {
        text.append("auto value = call(").append(std::to_string(below(1000))).append(");\n");
    }
    return text + "```\n";
}

std::string TextGenerator::block() {
    switch (below(12)) {
        case 0:
        case 1:
            return list();
        case 2:
            return code();
        case 3:
            return "## " + title() + "\n";
        case 4:
            return "> " + sentence() + "\n";
        default:
            return paragraph();
    }
}

std::string TextGenerator::note(const std::string& title, std::size_t size) {
    std::string text = "# " + title + "\n";
    const std::size_t tags = below(5);
    for (std::size_t tag = 0; tag < tags; ++tag) {
        // The smaller of two draws: a few tags are on many notes, most on few.
        const auto index = std::min(below(m_tagPaths.size()), below(m_tagPaths.size()));
        text.append(tag == 0 ? "\n#" : " #").append(m_tagPaths[index]);
    }
    if (tags > 0) text += '\n';
    while (text.size() < size) {
        text.append("\n").append(block());
    }
    return text;
}

}  // namespace corvel
