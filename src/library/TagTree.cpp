#include "library/TagTree.h"

#include "platform/Text.h"

#include <algorithm>
#include <string_view>

namespace corvel {

namespace {

Tag& childNamed(std::vector<Tag>& siblings, std::string_view name, std::string_view fullPath) {
    const auto found = std::find_if(siblings.begin(), siblings.end(),
                                    [&](const Tag& tag) { return tag.name == name; });
    if (found != siblings.end()) return *found;
    return siblings.emplace_back(Tag{Uuid::random(), std::string(name), std::string(fullPath), {}});
}

void addPath(std::vector<Tag>& roots, std::string_view path) {
    std::vector<Tag>* siblings = &roots;
    std::size_t start = 0;
    while (start <= path.size()) {
        const auto end = std::min(path.find('/', start), path.size());
        Tag& tag = childNamed(*siblings, path.substr(start, end - start), path.substr(0, end));
        siblings = &tag.children;
        start = end + 1;
    }
}

void sortByName(std::vector<Tag>& siblings, const char* language) {
    std::sort(siblings.begin(), siblings.end(), [&](const Tag& a, const Tag& b) {
        const int order = text::collate(a.name, b.name, language);
        return order != 0 ? order < 0 : a.name < b.name;
    });
    for (Tag& tag : siblings) {
        sortByName(tag.children, language);
    }
}

}  // namespace

std::vector<Tag> buildTagTree(const std::vector<std::string>& fullPaths, const char* language) {
    std::vector<Tag> roots;
    for (const auto& path : fullPaths) {
        addPath(roots, path);
    }
    sortByName(roots, language);
    return roots;
}

}  // namespace corvel
