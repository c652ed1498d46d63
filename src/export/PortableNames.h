#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace corvel {

/// Names of files and folders in one folder that every file system in use can have: made of titles,
/// without what some refuse, at most 180 bytes long, and each once, also where the size of letters
/// or the way they are composed makes no difference.
class PortableNames {
public:
    /// A name that is not to be given.
    void reserve(std::string_view name);
    /// `extension` comes with its dot, or is empty for a folder.
    std::string next(std::string_view title, std::string_view extension);

private:
    bool take(std::string_view name);

    std::unordered_set<std::string> m_taken;              // folded
    std::unordered_map<std::string, std::size_t> m_last;  // number given last, by folded name
};

}  // namespace corvel
