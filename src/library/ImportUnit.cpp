#include "library/ImportUnit.h"

#include "library/ImportedFile.h"
#include "library/MarkdownImages.h"
#include "library/NoteText.h"

#include <gio/gio.h>

#include <map>
#include <optional>
#include <string>
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
    explicit ImageImport(ImportUnit& unit) : m_unit(unit), m_folder(unit.path.parent_path()) {}

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

}  // namespace

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
    ImageImport(unit).run();
    unit.derived = DerivedText::of(unit.note.content);
    return unit;
}

}  // namespace corvel
