#include "library/SidebarFilter.h"

#include <array>
#include <utility>

namespace corvel {

namespace {

using Kind = SidebarFilter::Kind;

constexpr std::array kNames{
    std::pair{Kind::tag, "tag"},           std::pair{Kind::folder, "folder"},
    std::pair{Kind::allNotes, "allNotes"}, std::pair{Kind::localFiles, "localFiles"},
    std::pair{Kind::archived, "archived"}, std::pair{Kind::trash, "trash"},
    std::pair{Kind::unfiled, "unfiled"}};

}  // namespace

std::string SidebarFilter::toString() const {
    for (const auto& [value, name] : kNames) {
        if (value != kind) continue;
        if (kind == Kind::tag) return std::string(name) + ":" + tagPath;
        if (kind == Kind::folder) return std::string(name) + ":" + folderID.toString();
        return name;
    }
    return "allNotes";
}

SidebarFilter SidebarFilter::fromString(std::string_view text) {
    const auto colon = text.find(':');
    const auto head = text.substr(0, colon);
    const auto payload =
        colon == std::string_view::npos ? std::string_view{} : text.substr(colon + 1);
    for (const auto& [value, name] : kNames) {
        if (head != name) continue;
        if (value == Kind::tag)
            return payload.empty() ? SidebarFilter{} : tag(std::string(payload));
        if (value != Kind::folder) return {value, {}, {}};
        const auto id = Uuid::parse(payload);
        return id ? folder(*id) : SidebarFilter{};
    }
    return {};
}

}  // namespace corvel
