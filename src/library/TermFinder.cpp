#include "library/TermFinder.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

std::string takeLongest(std::vector<std::string>& terms) {
    const auto longest = std::ranges::max_element(terms, {}, &std::string::size);
    if (longest == terms.end()) return {};
    auto term = std::move(*longest);
    terms.erase(longest);
    return term;
}

}  // namespace

TermFinder::TermFinder(std::vector<std::string> terms) : m_longest(takeLongest(terms)) {
    for (auto& term : terms) {
        m_others.emplace_back(std::move(term));
    }
}

bool TermFinder::hasOthers(std::string_view text) const {
    return std::ranges::all_of(m_others, [&](const TextFinder& term) {
        return term.findIn(text) != std::string_view::npos;
    });
}

}  // namespace corvel
