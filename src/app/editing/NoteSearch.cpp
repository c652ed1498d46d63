#include "app/editing/NoteSearch.h"

#include "platform/Characters.h"
#include "platform/Handle.h"
#include "platform/Text.h"

#include <unicode/uregex.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <limits>
#include <utility>

namespace corvel::editing {

namespace {

/// Time this thread works: an expression is not slow because others keep the machine busy.
struct Clock {
    using duration = std::chrono::nanoseconds;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<Clock>;
    static constexpr bool is_steady = true;
    static time_point now() {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return time_point(std::chrono::seconds(time.tv_sec) +
                          std::chrono::nanoseconds(time.tv_nsec));
    }
};

// What one place in the text may take beyond its slice, and all such places together.
constexpr std::chrono::milliseconds kMostOverrun{80};
constexpr std::chrono::milliseconds kMostOverrunInAll{400};
constexpr std::uint32_t kPlacesPerLookAtTheClock = 1024;
constexpr std::size_t kMostUnits = std::numeric_limits<std::int32_t>::max() / 2;

void appendUtf16(std::u16string& to, std::string_view utf8) {
    const auto old = to.size();
    to.resize(old + utf8.size());  // never more units than bytes
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(to.data() + old, static_cast<std::int32_t>(utf8.size()), &length,
                         utf8.data(), static_cast<std::int32_t>(utf8.size()), U'\uFFFD', nullptr,
                         &status);
    to.resize(old + static_cast<std::size_t>(length));
}

void appendUtf8(std::string& to, std::u16string_view utf16) {
    constexpr std::size_t kMostBytesPerUnit = 3;
    const auto old = to.size();
    to.resize(old + utf16.size() * kMostBytesPerUnit);
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(to.data() + old, static_cast<std::int32_t>(to.size() - old), &length, utf16.data(),
                static_cast<std::int32_t>(utf16.size()), &status);
    to.resize(old + static_cast<std::size_t>(length));
}

char32_t unitsBefore(std::u16string_view text, std::int64_t position) {
    if (position <= 0) return 0;
    UChar32 character = 0;
    U16_PREV(text, 0, position, character);
    return static_cast<char32_t>(character);
}

char32_t unitsAt(std::u16string_view text, std::int64_t position) {
    const auto size = static_cast<std::int64_t>(text.size());
    if (position >= size) return 0;
    UChar32 character = 0;
    U16_NEXT(text, position, size, character);
    return static_cast<char32_t>(character);
}

}  // namespace

/// The expression over the text. ICU calls back while it looks for a match and while it tries one
/// place.
class NoteSearch::Engine {
public:
    enum class Step { match, none, paused, tooSlow };

    explicit Engine(const SearchQuery& query) {
        std::u16string pattern;
        appendUtf16(pattern, query.text);
        std::uint32_t flags = UREGEX_MULTILINE;
        if (!query.matchesCase) flags |= UREGEX_CASE_INSENSITIVE;
        if (!query.isPattern) flags |= UREGEX_LITERAL;
        UErrorCode status = U_ZERO_ERROR;
        m_regex.reset(uregex_open(pattern.data(), static_cast<std::int32_t>(pattern.size()), flags,
                                  nullptr, &status));
        if (U_FAILURE(status) != 0) m_regex.reset();
    }

    bool isValid() const { return m_regex != nullptr; }

    /// `text` must stay where it is.
    void setText(std::u16string_view text) {
        UErrorCode status = U_ZERO_ERROR;
        uregex_setText(m_regex.get(), text.data(), static_cast<std::int32_t>(text.size()), &status);
        uregex_setFindProgressCallback(m_regex.get(), &Engine::mayGoOn, this, &status);
        uregex_setMatchCallback(m_regex.get(), &Engine::mayTryOn, this, &status);
    }

    /// Looks on from `position`, which a pause moves.
    Step find(std::int64_t& position, Clock::time_point deadline) {
        m_deadline = deadline;
        m_pausedAt = -1;
        UErrorCode status = U_ZERO_ERROR;
        const bool isFound = uregex_find64(m_regex.get(), position, &status) != 0;
        if (m_pausedAt >= 0) {
            position = m_pausedAt;
            return Step::paused;
        }
        if (U_FAILURE(status) != 0) return Step::tooSlow;  // or too deep for its stack
        return isFound ? Step::match : Step::none;
    }

    std::int64_t begin(int group) const { return bound(&uregex_start64, group); }
    std::int64_t end(int group) const { return bound(&uregex_end64, group); }

    int groupCount() const {
        UErrorCode status = U_ZERO_ERROR;
        return uregex_groupCount(m_regex.get(), &status);
    }

private:
    using Bound = std::int64_t(URegularExpression*, std::int32_t, UErrorCode*);

    // Negative for a group that took no part.
    std::int64_t bound(Bound* function, int group) const {
        UErrorCode status = U_ZERO_ERROR;
        return function(m_regex.get(), group, &status);
    }

    static UBool mayGoOn(const void* context, std::int64_t position) {
        auto& self = *const_cast<Engine*>(static_cast<const Engine*>(context));
        if (++self.m_places % kPlacesPerLookAtTheClock != 0 && !self.m_isSlow) return 1;
        self.m_isSlow = false;
        if (Clock::now() < self.m_deadline) return 1;
        self.m_pausedAt = position;
        return 0;
    }

    static UBool mayTryOn(const void* context, std::int32_t) {
        auto& self = *const_cast<Engine*>(static_cast<const Engine*>(context));
        self.m_isSlow = true;
        return Clock::now() < self.m_deadline + kMostOverrun ? 1 : 0;
    }

    Handle<URegularExpression, uregex_close> m_regex;
    Clock::time_point m_deadline;
    std::int64_t m_pausedAt = -1;
    std::uint32_t m_places = 0;
    bool m_isSlow = false;  // the last place took many steps
};

NoteSearch::NoteSearch(SearchQuery query)
    : m_query(std::move(query)), m_engine(std::make_unique<Engine>(m_query)) {
    if (m_query.text.empty()) {
        finish(SearchFault::none);
    } else if (!m_engine->isValid()) {
        finish(SearchFault::badPattern);
    }
}

NoteSearch::~NoteSearch() = default;

void NoteSearch::append(std::string_view piece) {
    if (m_text.size() + piece.size() < kMostUnits) appendUtf16(m_text, piece);
}

void NoteSearch::finish(SearchFault fault) {
    m_isFinished = true;
    m_fault = fault;
    if (fault == SearchFault::none) return;
    m_matches.clear();
    m_units.clear();
}

bool NoteSearch::run(std::chrono::milliseconds limit) {
    if (m_isFinished) return false;
    if (!std::exchange(m_isStarted, true)) m_engine->setText(m_text);
    const auto deadline = Clock::now() + limit;
    while (m_position <= static_cast<std::int64_t>(m_text.size())) {
        const auto step = m_engine->find(m_position, deadline);
        if (step == Engine::Step::match) addMatch(m_engine->begin(0), m_engine->end(0));
        const auto now = Clock::now();
        if (now > deadline) m_overrun += now - deadline;
        const bool isSlow = step == Engine::Step::tooSlow || m_overrun > kMostOverrunInAll;
        if (isSlow || step == Engine::Step::none) {
            finish(isSlow ? SearchFault::tooSlow : SearchFault::none);
            return false;
        }
        if (now >= deadline) return true;
    }
    finish(SearchFault::none);
    return false;
}

void NoteSearch::addMatch(std::int64_t begin, std::int64_t end) {
    const auto size = static_cast<std::int64_t>(m_text.size());
    // An empty match is none; the search goes on behind the next character.
    m_position = end > begin   ? end
                 : end == size ? size + 1
                               : end + U16_LENGTH(unitsAt(m_text, end));
    if (end == begin || (m_query.wholeWords && !isWholeWord(begin, end))) return;
    const auto count = [this](std::int64_t to) {
        const auto unit = static_cast<std::int32_t>(to);
        m_countedCharacters += u_countChar32(m_text.data() + m_countedUnits, unit - m_countedUnits);
        m_countedUnits = unit;
        return m_countedCharacters;
    };
    const auto first = count(begin);
    m_matches.push_back({first, count(end)});
    m_units.push_back({static_cast<std::int32_t>(begin), static_cast<std::int32_t>(end)});
}

bool NoteSearch::isWholeWord(std::int64_t begin, std::int64_t end) const {
    const auto isInWord = [this](std::int64_t at) {
        return text::isWordCharacter(unitsBefore(m_text, at)) &&
               text::isWordCharacter(unitsAt(m_text, at));
    };
    return !isInWord(begin) && !isInWord(end);
}

std::optional<std::size_t> NoteSearch::indexOf(const SearchMatch& match) const {
    const auto found = std::ranges::lower_bound(m_matches, match.begin, {}, &SearchMatch::begin);
    if (found == m_matches.end() || *found != match) return std::nullopt;
    return static_cast<std::size_t>(found - m_matches.begin());
}

std::optional<std::size_t> NoteSearch::nextFrom(std::int32_t position) const {
    if (m_matches.empty()) return std::nullopt;
    const auto found = std::ranges::lower_bound(m_matches, position, {}, &SearchMatch::begin);
    return found == m_matches.end() ? 0 : static_cast<std::size_t>(found - m_matches.begin());
}

std::optional<std::size_t> NoteSearch::previousFrom(std::int32_t position) const {
    if (m_matches.empty()) return std::nullopt;
    const auto behind = std::ranges::upper_bound(m_matches, position, {}, &SearchMatch::end);
    const auto index = behind == m_matches.begin()
                           ? m_matches.size()
                           : static_cast<std::size_t>(behind - m_matches.begin());
    return index - 1;
}

std::string NoteSearch::replacementFor(std::size_t index, std::string_view replacement) {
    if (!m_query.isPattern) return std::string(replacement);
    std::int64_t position = m_units[index].begin;
    m_engine->find(position, Clock::now() + kMostOverrun);
    std::string result;
    for (std::size_t i = 0; i < replacement.size(); ++i) {
        const char mark = replacement[i];
        const char next = i + 1 < replacement.size() ? replacement[i + 1] : '\0';
        if (mark == '\\' && next != '\0') {
            result += next == 'n' ? '\n' : next == 't' ? '\t' : next;
            ++i;
        } else if (mark == '$' && next >= '0' && next <= '9' &&
                   next - '0' <= m_engine->groupCount()) {
            const auto begin = m_engine->begin(next - '0');
            const auto end = m_engine->end(next - '0');
            if (begin >= 0) {
                appendUtf8(result, std::u16string_view(m_text).substr(
                                       static_cast<std::size_t>(begin),
                                       static_cast<std::size_t>(end - begin)));
            }
            ++i;
        } else {
            result += mark;
        }
    }
    return result;
}

AllReplaced NoteSearch::allReplaced(std::string_view replacement) {
    AllReplaced result;
    result.lengths.reserve(m_units.size());
    const std::u16string_view text(m_text);
    for (std::size_t i = 0; i < m_units.size(); ++i) {
        if (i > 0) {
            const auto begin = static_cast<std::size_t>(m_units[i - 1].end);
            appendUtf8(result.text,
                       text.substr(begin, static_cast<std::size_t>(m_units[i].begin) - begin));
        }
        const std::string become = replacementFor(i, replacement);
        result.lengths.push_back(static_cast<std::int32_t>(text::characterCount(become)));
        result.text += become;
    }
    return result;
}

std::int32_t NoteSearch::placeAfter(const AllReplaced& replaced, std::int32_t place) const {
    std::int32_t grown = 0;
    for (std::size_t i = 0; i < m_matches.size() && m_matches[i].begin < place; ++i) {
        const auto& match = m_matches[i];
        if (match.end > place) return match.begin + grown;
        grown += replaced.lengths[i] - (match.end - match.begin);
    }
    return place + grown;
}

}  // namespace corvel::editing
