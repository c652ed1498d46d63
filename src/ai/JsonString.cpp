#include "ai/JsonString.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>

namespace corvel {

namespace {

using nlohmann::json;

/// Follows one path through the values of a text as they come.
class PathFollower {
public:
    explicit PathFollower(const JsonPath& path) : m_steps(path), m_elements(path.size(), 0) {}

    void key(std::string_view key) {
        if (m_inside == m_depth && m_depth > 0) m_isNext = key == m_steps[m_depth - 1];
    }
    void begin(bool isArray) {
        const bool isOnPath = takesPlace();
        ++m_depth;
        if (!isOnPath || m_depth > m_steps.size()) return;
        if (isArray != (m_steps[m_depth - 1] == kFirstElement)) return;
        m_inside = m_depth;
        m_elements[m_depth - 1] = 0;
        m_isNext = false;
    }
    void end() {
        if (m_inside == m_depth) --m_inside;
        --m_depth;
    }
    void string(std::string& text) {
        if (takesPlace() && m_depth == m_steps.size()) m_found = text;
    }
    void other() { takesPlace(); }

    std::optional<std::string> takeFound() { return std::move(m_found); }

private:
    // Whether the value that comes stands where the path leads, so far as the path has come.
    bool takesPlace() {
        if (m_inside != m_depth) return false;
        if (m_depth == 0) return true;
        if (m_steps[m_depth - 1] != kFirstElement) return m_isNext;
        return m_elements[m_depth - 1]++ == 0;
    }

    const JsonPath& m_steps;
    std::vector<std::size_t> m_elements;  // of each open array on the path, how many came
    std::size_t m_depth = 0;              // open objects and arrays
    std::size_t m_inside = 0;             // how many of them, from the outside, are on the path
    bool m_isNext = false;                // the last key was the path's
    std::optional<std::string> m_found;
};

/// What the parser calls, by its names.
// NOLINTBEGIN(readability-identifier-naming)
class Followers {
public:
    explicit Followers(const std::vector<JsonPath>& paths) : m_all(paths.begin(), paths.end()) {}

    bool null() { return other(); }
    bool boolean(bool) { return other(); }
    bool number_integer(json::number_integer_t) { return other(); }
    bool number_unsigned(json::number_unsigned_t) { return other(); }
    bool number_float(json::number_float_t, const std::string&) { return other(); }
    bool binary(json::binary_t&) { return other(); }
    bool string(std::string& text) {
        return each([&](PathFollower& one) { one.string(text); });
    }
    bool key(std::string& key) {
        return each([&](PathFollower& one) { one.key(key); });
    }
    bool start_object(std::size_t) { return begin(false); }
    bool start_array(std::size_t) { return begin(true); }
    bool end_object() { return end(); }
    bool end_array() { return end(); }
    bool parse_error(std::size_t, const std::string&, const json::exception&) { return false; }

    std::vector<std::optional<std::string>> takeFound() {
        std::vector<std::optional<std::string>> found;
        for (auto& one : m_all) {
            found.push_back(one.takeFound());
        }
        return found;
    }

private:
    template <typename Call>
    bool each(const Call& call) {
        for (auto& one : m_all) {
            call(one);
        }
        return true;
    }
    bool other() {
        return each([](PathFollower& one) { one.other(); });
    }
    bool begin(bool isArray) {
        return each([&](PathFollower& one) { one.begin(isArray); });
    }
    bool end() {
        return each([](PathFollower& one) { one.end(); });
    }

    std::vector<PathFollower> m_all;
};
// NOLINTEND(readability-identifier-naming)

}  // namespace

std::vector<std::optional<std::string>> jsonStringsAt(std::string_view text,
                                                      const std::vector<JsonPath>& paths) {
    Followers followers(paths);
    if (!json::sax_parse(text, &followers)) {
        return std::vector<std::optional<std::string>>(paths.size());
    }
    return followers.takeFound();
}

}  // namespace corvel
