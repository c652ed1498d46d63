#pragma once

#include "platform/Handle.h"

#include <enchant.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvel {

/// The Polish and English dictionaries of this system. Notes mix both languages, so a word is right
/// when one of them knows it. Words that are added go to the user's own word lists, which other
/// programs share.
class SpellDictionaries {
public:
    /// Reads the dictionaries, in one piece of up to a quarter of a second. Any thread may do so;
    /// whoever has them then is the only one to use them.
    SpellDictionaries();
    SpellDictionaries(const SpellDictionaries&) = delete;
    SpellDictionaries& operator=(const SpellDictionaries&) = delete;
    ~SpellDictionaries();

    /// False when none is installed: every word is right then.
    bool areAny() const { return !m_dictionaries.empty(); }
    bool isRight(std::string_view word);
    /// Up to `most`, the nearest words first; of those as near, letters swapped or forgotten before
    /// others, then the words of the language that knows more of `context`, or of `preferred`
    /// ("pl", "en") when none does.
    std::vector<std::string> suggestions(const std::string& word,
                                         const std::vector<std::string>& context,
                                         std::size_t most,
                                         std::string_view preferred);
    void add(const std::string& word);
    /// Until the program ends.
    void ignore(const std::string& word);

private:
    using Broker = Handle<EnchantBroker, enchant_broker_free>;

    bool isKnown(EnchantDict* dictionary, std::string_view word) const;
    EnchantDict* languageOf(const std::vector<std::string>& words,
                            std::string_view preferred) const;

    Broker m_broker;
    std::vector<EnchantDict*> m_dictionaries;  // the broker's
    std::unordered_map<std::string, bool> m_answers;
};

}  // namespace corvel
