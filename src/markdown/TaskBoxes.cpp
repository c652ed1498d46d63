#include "markdown/TaskBoxes.h"

#include "markdown/MarkdownTree.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace corvel {

namespace {

constexpr std::string_view kOpenBox = "[ ]";

bool isInDoubt(std::string_view markdown) {
    for (auto box = markdown.find(kOpenBox); box != markdown.npos;) {
        const auto end = std::min(markdown.find_first_of("\r\n", box), markdown.size());
        const auto rest = markdown.substr(box, end - box);
        if (rest.find("[x]") != rest.npos || rest.find("[X]") != rest.npos) return true;
        box = markdown.find(kOpenBox, end);
    }
    return false;
}

// As the parser counts them: a line ends with CR, LF or both.
std::vector<std::string_view> linesOf(std::string_view markdown) {
    std::vector<std::string_view> lines;
    for (std::size_t start = 0; start < markdown.size();) {
        const auto end = std::min(markdown.find_first_of("\r\n", start), markdown.size());
        lines.push_back(markdown.substr(start, end - start));
        start = end + (markdown.substr(end).starts_with("\r\n") ? 2 : 1);
    }
    return lines;
}

// The first bracket behind the item's mark is the box.
bool isOpenIn(std::string_view line) {
    return line.substr(std::min(line.find('['), line.size())).starts_with(kOpenBox);
}

cmark_node* following(cmark_node* node) {
    if (node->first_child != nullptr) return node->first_child;
    while (node != nullptr && node->next == nullptr)
        node = node->parent;
    return node == nullptr ? nullptr : node->next;
}

}  // namespace

void correctTaskBoxes(cmark_node* root, std::string_view markdown) {
    if (!isInDoubt(markdown)) return;
    const auto lines = linesOf(markdown);
    for (cmark_node* node = root; node != nullptr; node = following(node)) {
        if (!MarkdownTree::isTaskItem(node)) continue;
        const auto line = static_cast<std::size_t>(node->start_line) - 1;
        if (line < lines.size() && isOpenIn(lines[line])) node->as.list.checked = false;
    }
}

}  // namespace corvel
