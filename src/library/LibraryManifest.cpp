#include "library/LibraryManifest.h"

#include "platform/RegularFile.h"
#include "platform/Text.h"

#include <nlohmann/json.hpp>

namespace corvel {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kFormat = "qno-corvel-library";
constexpr int kVersion = 1;
constexpr std::size_t kLargest = std::size_t{16} * 1024 * 1024;
constexpr std::size_t kLongestName = 10'000;
constexpr int kDeepest = 3;  // of the lists and objects in it

std::string textIn(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::optional<LibraryManifest::FolderEntry> folderFrom(const Json& object) {
    if (!object.is_object()) return std::nullopt;
    LibraryManifest::FolderEntry entry;
    entry.id = Uuid::parse(textIn(object, "id")).value_or(Uuid::random());
    entry.name = text::repaired(text::prefixByBytes(textIn(object, "name"), kLongestName));
    entry.path = textIn(object, "path");
    entry.parentID = Uuid::parse(textIn(object, "parent"));
    if (entry.path.empty()) return std::nullopt;
    return entry;
}

}  // namespace

std::string LibraryManifest::json() const {
    Json list = Json::array();
    for (const auto& folder : folders) {
        Json entry = {{"path", folder.path}, {"name", folder.name}, {"id", folder.id.toString()}};
        if (folder.parentID) entry["parent"] = folder.parentID->toString();
        list.push_back(std::move(entry));
    }
    Json all = {
        {"format", kFormat}, {"version", kVersion}, {"exported", exportedAt}, {"notes", noteCount}};
    all["trash"] = trashPath;
    all["folders"] = std::move(list);
    return all.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<LibraryManifest> LibraryManifest::in(const std::filesystem::path& folder) {
    const auto bytes = readRegularFile(folder / kFileName, kLargest);
    if (!bytes) return std::nullopt;
    // What lies deeper is not kept: each level of it would take many times its one byte.
    const auto isShallow = [](int depth, Json::parse_event_t, Json&) { return depth <= kDeepest; };
    const auto all = Json::parse(*bytes, isShallow, false);
    if (!all.is_object() || textIn(all, "format") != kFormat) return std::nullopt;
    LibraryManifest manifest;
    manifest.exportedAt = textIn(all, "exported");
    manifest.trashPath = textIn(all, "trash");
    if (const auto notes = all.find("notes"); notes != all.end() && notes->is_number_unsigned())
        manifest.noteCount = notes->get<std::size_t>();
    const auto folders = all.find("folders");
    if (folders == all.end() || !folders->is_array()) return manifest;
    for (const auto& object : *folders) {
        if (auto entry = folderFrom(object)) manifest.folders.push_back(*std::move(entry));
    }
    return manifest;
}

}  // namespace corvel
