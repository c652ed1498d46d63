#include "library/ImportUnit.h"

#include "library/AttachmentLinks.h"
#include "library/ImportedFile.h"
#include "library/MarkdownImages.h"
#include "library/NoteText.h"
#include "library/TagScanner.h"
#include "platform/DistantVolumes.h"
#include "platform/Text.h"

#include <gio/gio.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kLargestText = 256 * 1024 * 1024;
constexpr std::size_t kLargestImage = 64 * 1024 * 1024;
// Beyond this, images of one text are left as they are: they are all in memory at once.
constexpr std::size_t kMostImageBytes = 256 * 1024 * 1024;

std::string takenOver(gchar* text) {
    std::string taken = text != nullptr ? text : "";
    g_free(text);
    return taken;
}

// The type by name and content; empty when it is no image. Whatever else a text points at on this
// disk is none of the library's business.
std::string imageTypeOf(const std::filesystem::path& path, const std::string& bytes) {
    const auto type = takenOver(g_content_type_guess(path.filename().c_str(),
                                                     reinterpret_cast<const guchar*>(bytes.data()),
                                                     bytes.size(), nullptr));
    const auto mime = takenOver(g_content_type_get_mime_type(type.c_str()));
    return mime.starts_with("image/") ? mime : std::string();
}

std::optional<Attachment> readImage(const std::filesystem::path& path) {
    auto read = ImportedFile::read(path, kLargestImage);
    auto* file = std::get_if<ImportedFile>(&read);
    if (file == nullptr || file->bytes.empty()) return std::nullopt;
    auto type = imageTypeOf(path, file->bytes);
    if (type.empty()) return std::nullopt;
    return Attachment{Uuid::random(),
                      path.filename().string(),
                      std::move(type),
                      {file->bytes.begin(), file->bytes.end()},
                      std::nullopt};
}

/// Takes in the images of one text and points the text at them.
class ImageImport {
public:
    explicit ImageImport(ImportUnit& unit) : m_unit(unit), m_folder(unit.path.parent_path()) {
        for (const auto& path : unit.listed)
            m_known.emplace(path, std::nullopt);
    }

    void run() {
        const std::string text = std::move(m_unit.note.content);
        std::string& content = m_unit.note.content = {};
        std::size_t copied = 0;
        for (const auto& image : imageReferencesIn(text)) {
            if (image.address.begin < copied) continue;
            const auto& id = attachmentFor(image.path);
            if (!id) continue;
            content.append(text, copied, image.address.begin - copied);
            content += "attachment://" + id->toString();
            copied = image.address.end;
        }
        content.append(text, copied);
    }

private:
    const std::optional<Uuid>& attachmentFor(const std::string& relative) {
        const auto path = (m_folder / relative).lexically_normal();
        const auto [known, isNew] = m_known.try_emplace(path);
        if (!isNew) return known->second;
        auto image = m_bytes < kMostImageBytes ? readImage(path) : std::nullopt;
        if (image) {
            known->second = image->id;
            m_bytes += image->data.size();
            m_unit.attachments.push_back(*std::move(image));
        } else {
            m_unit.missingImages.push_back(path);
        }
        return known->second;
    }

    ImportUnit& m_unit;
    std::filesystem::path m_folder;
    std::map<std::filesystem::path, std::optional<Uuid>> m_known;
    std::size_t m_bytes = 0;
};

bool isTagPath(const std::string& path) {
    return !path.empty() && path.size() <= TagScanner::kLongestPath &&
           std::cmp_less(std::ranges::count(path, '/'), TagScanner::kMostSegments) &&
           text::isValidUtf8(path);
}

void takeTags(Note& note, std::vector<std::string>& paths) {
    for (auto& path : paths) {
        if (!isTagPath(path)) continue;
        if (note.tags.size() == TagScanner::kMostPaths) return;
        const auto name = path.substr(path.rfind('/') + 1);
        note.tags.push_back({Uuid::random(), name, std::move(path), {}});
    }
}

void takeState(Note& note, FrontMatter& values) {
    if (values.id) note.id = *values.id;
    if (values.createdAt) note.createdAt = *values.createdAt;
    if (values.modifiedAt) note.modifiedAt = *values.modifiedAt;
    note.isPinned = values.isPinned;
    note.isArchived = values.isArchived;
    note.isTrashed = values.isTrashed;
    if (values.isTrashed) note.trashedAt = values.trashedAt;
    takeTags(note, values.tags);
}

/// Takes in the files that a file of an exported library lists, and points the text at them again.
class ListedFiles {
public:
    explicit ListedFiles(ImportUnit& unit) : m_unit(unit) {}

    void take(std::vector<FrontMatter::File> files) {
        for (auto& file : files) {
            m_unit.listed.push_back((m_unit.path.parent_path() / file.path).lexically_normal());
            if (file.isAnothers) {
                link(file);
                m_unit.borrowed.push_back(std::move(file));
            } else {
                takeOne(file);
            }
        }
        if (m_linked.empty()) return;
        m_unit.note.content = withAttachmentAddresses(m_unit.note.content, m_linked);
    }

private:
    void takeOne(const FrontMatter::File& file) {
        auto attachment =
            m_bytes < kMostImageBytes ? readListedFile(m_unit.path, file) : std::nullopt;
        if (!attachment) {
            m_unit.missingImages.push_back(m_unit.path.parent_path() / file.path);
            return;
        }
        m_bytes += attachment->data.size();
        m_unit.attachments.push_back(*std::move(attachment));
        link(file);
    }

    void link(const FrontMatter::File& file) {
        if (file.isLinked) m_linked.emplace(fileAddress(file.path), file.id);
    }

    ImportUnit& m_unit;
    std::unordered_map<std::string, Uuid> m_linked;
    std::size_t m_bytes = 0;
};

// What the block at the start of the file says; the block itself goes, when it is ours alone.
void takeFrontMatter(ImportUnit& unit) {
    auto found = frontMatterOf(unit.note.content);
    if (!found) return;
    auto& values = found->values;
    if (values.title) unit.note.title = text::repaired(*values.title);
    if (!found->isOurs) return;
    unit.isFromLibrary = true;
    takeState(unit.note, values);
    unit.folders = std::move(values.folders);
    unit.note.content.erase(0, found->textBegin);
    ListedFiles(unit).take(std::move(values.attachments));
}

}  // namespace

std::optional<Attachment> readListedFile(const std::filesystem::path& markdown,
                                         const FrontMatter::File& file) {
    namespace fs = std::filesystem;
    if (!distantVolumes::answersFor(markdown)) return std::nullopt;
    std::error_code error;
    const auto folder = fs::canonical(markdown.parent_path(), error);
    const auto path = error ? fs::path() : fs::canonical(folder / file.path, error);
    if (error || !path.native().starts_with((folder / "").native())) return std::nullopt;
    auto read = ImportedFile::read(path, kLargestText);
    auto* bytes = std::get_if<ImportedFile>(&read);
    if (bytes == nullptr) return std::nullopt;
    return Attachment{file.id,
                      text::repaired(file.name.empty() ? path.filename().string() : file.name),
                      text::repaired(file.type),
                      {bytes->bytes.begin(), bytes->bytes.end()},
                      std::nullopt};
}

void ImportUnit::renameAttachment(const Uuid& from, const Uuid& to) {
    for (auto& attachment : attachments) {
        if (attachment.id == from) attachment.id = to;
    }
    const auto old = attachmentAddress(from);
    for (auto at = note.content.find(old); at != std::string::npos;
         at = note.content.find(old, at + old.size())) {
        note.content.replace(at, old.size(), attachmentAddress(to));
    }
    derived = DerivedText::of(note.content);
}

std::size_t ImportUnit::size() const {
    std::size_t size = note.content.size();
    for (const auto& attachment : attachments)
        size += attachment.data.size();
    return size;
}

std::variant<ImportUnit, ImportFault> ImportUnit::read(const std::filesystem::path& path) {
    auto read = ImportedFile::read(path, kLargestText);
    if (const auto* fault = std::get_if<ImportFault>(&read)) return *fault;
    auto& file = std::get<ImportedFile>(read);
    auto text = decodedText(std::move(file.bytes));
    if (!text) return ImportFault::notText;
    ImportUnit unit;
    unit.path = path;
    unit.note.id = Uuid::random();
    unit.note.content = *std::move(text);
    unit.note.title = titleFromContent(unit.note.content);
    unit.note.createdAt = file.createdAt;
    unit.note.modifiedAt = file.modifiedAt;
    takeFrontMatter(unit);
    ImageImport(unit).run();
    unit.derived = DerivedText::of(unit.note.content);
    return unit;
}

}  // namespace corvel
