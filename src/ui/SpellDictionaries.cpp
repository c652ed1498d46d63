#include "ui/SpellDictionaries.h"

#include "platform/Characters.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kMostAnswers = 50'000;
// Of several variants of a language the first of these that is installed is taken.
constexpr std::array<std::array<const char*, 4>, 2> kLanguages{
    {{"pl_PL", "pl", nullptr, nullptr}, {"en_US", "en_GB", "en", nullptr}}};

ssize_t lengthOf(std::string_view word) {
    return static_cast<ssize_t>(word.size());
}

// Dictionaries know the straight apostrophe.
std::string withStraightApostrophes(std::string_view word) {
    std::string plain(word);
    for (auto at = plain.find("’"); at != plain.npos; at = plain.find("’"))
        plain.replace(at, std::strlen("’"), "'");
    return plain;
}

std::u32string charactersOf(const std::string& word) {
    std::u32string characters;
    for (std::size_t at = 0; at < word.size(); at = text::nextPosition(word, at))
        characters += text::characterAt(word, at);
    return characters;
}

// Letters to change, add, take away or swap to make one word of the other.
std::size_t distance(const std::string& from, const std::string& to) {
    const auto a = charactersOf(from);
    const auto b = charactersOf(to);
    std::vector<std::vector<std::size_t>> rows(a.size() + 1,
                                               std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            auto& best = rows[i][j];
            best = i == 0 ? j : rows[i - 1][j] + 1;
            if (j > 0) best = std::min(best, rows[i][j - 1] + 1);
            if (i > 0 && j > 0)
                best = std::min(best, rows[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0U : 1U));
            const bool isSwap = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (isSwap) best = std::min(best, rows[i - 2][j - 2] + 1);
        }
    }
    return rows[a.size()][b.size()];
}

// What the hand does wrong, the likeliest first.
enum class Slip { swapped, forgotten, wrong, tooMany, spaceForgotten };

Slip slipBetween(const std::string& typed, const std::string& meant) {
    if (meant.find(' ') != meant.npos) return Slip::spaceForgotten;
    auto a = charactersOf(typed);
    auto b = charactersOf(meant);
    if (a.size() != b.size()) return a.size() < b.size() ? Slip::forgotten : Slip::tooMany;
    std::ranges::sort(a);
    std::ranges::sort(b);
    return a == b ? Slip::swapped : Slip::wrong;
}

bool isOfLanguage(EnchantDict* dictionary, std::string_view language) {
    std::string tag;
    enchant_dict_describe(
        dictionary,
        [](const char* name, const char*, const char*, const char*, void* to) {
            *static_cast<std::string*>(to) = name;
        },
        &tag);
    return tag.starts_with(language);
}

}  // namespace

SpellDictionaries::SpellDictionaries() : m_broker(enchant_broker_init()) {
    for (const auto& variants : kLanguages) {
        for (const char* variant : variants) {
            if (variant == nullptr || enchant_broker_dict_exists(m_broker.get(), variant) == 0)
                continue;
            auto* dictionary = enchant_broker_request_dict(m_broker.get(), variant);
            if (dictionary == nullptr) continue;
            m_dictionaries.push_back(dictionary);
            break;
        }
    }
}

SpellDictionaries::~SpellDictionaries() {
    for (auto* dictionary : m_dictionaries)
        enchant_broker_free_dict(m_broker.get(), dictionary);
}

bool SpellDictionaries::isKnown(EnchantDict* dictionary, std::string_view word) const {
    return enchant_dict_check(dictionary, word.data(), lengthOf(word)) == 0;
}

bool SpellDictionaries::isRight(std::string_view word) {
    if (m_dictionaries.empty()) return true;
    if (m_answers.size() > kMostAnswers) m_answers.clear();
    const auto [answer, isNew] = m_answers.try_emplace(std::string(word), false);
    if (isNew) {
        const auto plain = withStraightApostrophes(word);
        answer->second = std::ranges::any_of(
            m_dictionaries, [&](EnchantDict* dictionary) { return isKnown(dictionary, plain); });
    }
    return answer->second;
}

EnchantDict* SpellDictionaries::languageOf(const std::vector<std::string>& words,
                                           std::string_view preferred) const {
    return *std::ranges::max_element(m_dictionaries, {}, [&](EnchantDict* dictionary) {
        const auto known = std::ranges::count_if(
            words, [&](const std::string& word) { return isKnown(dictionary, word); });
        return std::pair(known, isOfLanguage(dictionary, preferred));
    });
}

std::vector<std::string> SpellDictionaries::suggestions(const std::string& word,
                                                        const std::vector<std::string>& context,
                                                        std::size_t most,
                                                        std::string_view preferred) {
    std::vector<std::string> found;
    if (m_dictionaries.empty()) return found;
    auto dictionaries = m_dictionaries;
    std::swap(dictionaries.front(),
              *std::ranges::find(dictionaries, languageOf(context, preferred)));
    for (auto* dictionary : dictionaries) {
        std::size_t count = 0;
        char** words = enchant_dict_suggest(dictionary, word.data(), lengthOf(word), &count);
        for (std::size_t i = 0; i < count; ++i) {
            if (std::ranges::find(found, words[i]) == found.end()) found.emplace_back(words[i]);
        }
        if (words != nullptr) enchant_dict_free_string_list(dictionary, words);
    }
    std::ranges::stable_sort(found, {}, [&](const std::string& other) {
        return std::pair(distance(word, other), slipBetween(word, other));
    });
    found.resize(std::min(found.size(), most));
    return found;
}

void SpellDictionaries::add(const std::string& word) {
    m_answers.clear();
    if (!m_dictionaries.empty()) {
        // One word list is enough: a word is right when one dictionary knows it.
        enchant_dict_add(m_dictionaries.front(), word.data(), lengthOf(word));
    }
}

void SpellDictionaries::ignore(const std::string& word) {
    m_answers.clear();
    for (auto* dictionary : m_dictionaries)
        enchant_dict_add_to_session(dictionary, word.data(), lengthOf(word));
}

}  // namespace corvel
