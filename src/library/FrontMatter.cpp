#include "library/FrontMatter.h"

#include "library/IsoDate.h"

#include <nlohmann/json.hpp>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <string>

namespace corvel {

namespace {

constexpr std::string_view kFence = "---";
constexpr const char* kMark = "corvel";  // the first key of a block of ours
constexpr int kVersion = 1;
// More than this is not read: a block is made whole in memory.
constexpr std::size_t kLongestOfOurs = std::size_t{4} * 1024 * 1024;
constexpr std::size_t kLongestOfOthers = std::size_t{64} * 1024;

// --- writing -----------------------------------------------------------------------------------

// Text always stands in quotation marks, as "yes", "1.10" and "null" are titles too; a string of
// JSON is one of YAML. The keys need no quoting, so the block is put together here: the library's
// emitter takes longer than the file system does for the file.
std::string quoted(const std::string& text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void add(std::string& out, std::string_view key, const std::string& value) {
    out.append(key).append(": ").append(value).append("\n");
}

void add(std::string& out, std::string_view key, const std::optional<Date>& date) {
    const auto text = date ? isoDate(*date) : std::nullopt;
    if (text) add(out, key, *text);
}

void addFlag(std::string& out, std::string_view key, bool value) {
    if (value) add(out, key, std::string("true"));
}

void add(std::string& out, std::string_view key, const std::vector<std::string>& texts) {
    std::string list;
    for (const auto& text : texts)
        list.append(list.empty() ? "" : ", ").append(quoted(text));
    add(out, key, "[" + list + "]");
}

void add(std::string& out, const FrontMatter::File& file) {
    add(out, "  - file", quoted(file.path));
    if (!file.name.empty()) add(out, "    name", quoted(file.name));
    add(out, "    type", quoted(file.type));
    add(out, "    id", quoted(file.id.toString()));
    if (!file.isLinked) add(out, "    linked", std::string("false"));
    addFlag(out, "    shared", file.isAnothers);
}

// --- reading -----------------------------------------------------------------------------------

/// The YAML between the lines, and where what follows begins.
struct Block {
    std::string_view yaml;
    std::size_t end;
};

bool isFence(std::string_view line) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.remove_suffix(1);
    return line == kFence;
}

std::optional<Block> blockOf(std::string_view text) {
    if (!text.starts_with(kFence)) return std::nullopt;
    const auto first = text.find('\n');
    if (first == text.npos || !isFence(text.substr(0, first))) return std::nullopt;
    const bool isOurs = text.substr(first + 1).starts_with(kMark);
    const auto limit = isOurs ? kLongestOfOurs : kLongestOfOthers;
    std::size_t line = first + 1;
    while (line < text.size() && line < limit) {
        const auto newline = std::min(text.find('\n', line), text.size());
        if (isFence(text.substr(line, newline - line))) {
            return Block{text.substr(first + 1, line - first - 1),
                         std::min(newline + 1, text.size())};
        }
        line = newline + 1;
    }
    return std::nullopt;
}

std::optional<std::string> textOf(const YAML::Node& node) {
    return node.IsScalar() ? std::optional(node.Scalar()) : std::nullopt;
}

std::optional<Date> dateOf(const YAML::Node& node) {
    return node.IsScalar() ? dateFromIso(node.Scalar()) : std::nullopt;
}

std::optional<Uuid> idOf(const YAML::Node& node) {
    return node.IsScalar() ? Uuid::parse(node.Scalar()) : std::nullopt;
}

bool isTrue(const YAML::Node& node) {
    return node.IsScalar() && node.Scalar() == "true";
}

std::vector<std::string> textsOf(const YAML::Node& node) {
    std::vector<std::string> texts;
    if (!node.IsSequence()) return texts;
    for (const auto& entry : node) {
        if (entry.IsScalar()) texts.push_back(entry.Scalar());
    }
    return texts;
}

std::optional<FrontMatter::File> fileOf(const YAML::Node& node) {
    if (!node.IsMap()) return std::nullopt;
    FrontMatter::File file;
    bool hasId = false;
    for (const auto& entry : node) {
        const auto key = textOf(entry.first).value_or("");
        const auto& value = entry.second;
        if (key == "file") file.path = textOf(value).value_or("");
        if (key == "name") file.name = textOf(value).value_or("");
        if (key == "type") file.type = textOf(value).value_or("");
        if (key == "linked") file.isLinked = isTrue(value);
        if (key == "shared") file.isAnothers = isTrue(value);
        if (key != "id") continue;
        if (const auto id = idOf(value)) {
            file.id = *id;
            hasId = true;
        }
    }
    if (!hasId || file.path.empty()) return std::nullopt;
    return file;
}

std::vector<FrontMatter::File> filesOf(const YAML::Node& node) {
    std::vector<FrontMatter::File> files;
    if (!node.IsSequence()) return files;
    for (const auto& entry : node) {
        if (auto file = fileOf(entry)) files.push_back(*std::move(file));
    }
    return files;
}

// False for a key that the program does not know.
bool take(FrontMatter& values, const std::string& key, const YAML::Node& value) {
    if (key == "id") {
        values.id = idOf(value);
    } else if (key == "title") {
        values.title = textOf(value);
    } else if (key == "created") {
        values.createdAt = dateOf(value);
    } else if (key == "modified") {
        values.modifiedAt = dateOf(value);
    } else if (key == "pinned") {
        values.isPinned = isTrue(value);
    } else if (key == "archived") {
        values.isArchived = isTrue(value);
    } else if (key == "trashed") {
        values.isTrashed = isTrue(value);
    } else if (key == "trashedAt") {
        values.trashedAt = dateOf(value);
    } else if (key == "tags") {
        values.tags = textsOf(value);
    } else if (key == "folders") {
        values.folders = textsOf(value);
    } else if (key == "source") {
        values.source = textOf(value);
    } else if (key == "attachments") {
        values.attachments = filesOf(value);
    } else {
        return key == kMark;
    }
    return true;
}

FoundFrontMatter readMap(const YAML::Node& map, std::size_t end) {
    FoundFrontMatter found;
    found.isOurs = map.begin() != map.end() && textOf(map.begin()->first) == kMark;
    bool isKnown = found.isOurs;
    for (const auto& entry : map) {
        const auto key = textOf(entry.first).value_or("");
        if (found.isOurs) {
            isKnown = take(found.values, key, entry.second) && isKnown;
        } else if (key == "title") {
            found.values.title = textOf(entry.second);
        }
    }
    if (isKnown) found.textBegin = end;
    return found;
}

}  // namespace

std::string FrontMatter::block() const {
    std::string out(kFence);
    out += '\n';
    add(out, kMark, std::to_string(kVersion));
    if (title) add(out, "title", quoted(*title));
    if (id) add(out, "id", quoted(id->toString()));
    add(out, "created", createdAt);
    add(out, "modified", modifiedAt);
    addFlag(out, "pinned", isPinned);
    addFlag(out, "archived", isArchived);
    addFlag(out, "trashed", isTrashed);
    add(out, "trashedAt", trashedAt);
    if (!tags.empty()) add(out, "tags", tags);
    if (folders) add(out, "folders", *folders);
    if (source) add(out, "source", quoted(*source));
    if (!attachments.empty()) {
        out += "attachments:\n";
        for (const auto& file : attachments)
            add(out, file);
    }
    return out.append(kFence).append("\n");
}

std::optional<FoundFrontMatter> frontMatterOf(std::string_view text) {
    const auto block = blockOf(text);
    if (!block) return std::nullopt;
    try {
        const auto map = YAML::Load(std::string(block->yaml));
        if (!map.IsMap()) return std::nullopt;
        return readMap(map, block->end);
    } catch (const YAML::Exception&) {
        return std::nullopt;
    }
}

}  // namespace corvel
