#include "library/ImageKeeper.h"

#include "library/ImportedFile.h"
#include "model/PersistenceController.h"
#include "platform/DistantVolumes.h"
#include "platform/ImageType.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

std::string markdownFor(const std::string& name, const Uuid& id) {
    std::string text;
    for (const char letter : text::repaired(name)) {
        if (letter == '[' || letter == ']' || letter == '\\') text += '\\';
        text += letter == '\n' || letter == '\r' ? ' ' : letter;
    }
    return "![" + text + "](attachment://" + id.toString() + ")";
}

}  // namespace

ImageKeeper::Taken ImageKeeper::takeFile(const std::filesystem::path& path,
                                         const Uuid& noteID) const {
    if (!distantVolumes::answersFor(path)) return ImageFault::unreadable;
    std::error_code error;
    if (std::filesystem::file_size(path, error) > kLargest && !error) return ImageFault::tooLarge;
    auto read = ImportedFile::read(path, kLargest);
    if (std::holds_alternative<ImportFault>(read)) return ImageFault::unreadable;
    const auto& bytes = std::get<ImportedFile>(read).bytes;
    return take({bytes.begin(), bytes.end()}, path.stem().string(), noteID);
}

ImageKeeper::Taken ImageKeeper::take(std::vector<std::uint8_t> bytes,
                                     const std::string& name,
                                     const Uuid& noteID) const {
    if (bytes.size() > kLargest) return ImageFault::tooLarge;
    const auto type = imageTypeOf({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (type.empty()) return ImageFault::notAnImage;
    const Uuid id = Uuid::random();
    const Attachment attachment{id,
                                text::repaired(name) + std::string(imageExtension(type)),
                                std::string(type),
                                std::move(bytes),
                                {}};
    auto& store = m_library.controller.viewContext();
    ViewContext::Batch batch(store);
    try {
        batch.apply([&] { m_library.attachments.createUnsaved(attachment, noteID); });
        store.save();
    } catch (const StoreError& error) {
        logLine(std::string("Error importing image: ") + error.what());
        return ImageFault::store;
    }
    return markdownFor(name, id);
}

}  // namespace corvel
