#include "export/epub/BookArchive.h"

#include "export/ExportError.h"
#include "export/WorkingFolder.h"
#include "platform/Handle.h"
#include "platform/RegularFile.h"

#include <zip.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <utility>

namespace corvel {

namespace {

using Archive = Handle<zip_t, zip_discard>;

constexpr const char* kCannotCreate = "Cannot create archive: ";

[[noreturn]] void fail(const std::string& detail) {
    throw ExportError(ExportError::Kind::epubCreationFailed, kCannotCreate + detail);
}

Archive openArchive(const std::filesystem::path& path) {
    int code = 0;
    Archive archive(zip_open(path.c_str(), ZIP_CREATE | ZIP_EXCL, &code));
    if (archive) return archive;
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    const std::string detail = zip_error_strerror(&error);
    zip_error_fini(&error);
    fail(detail);
}

void addFile(zip_t* archive, const BookFile& file, zip_int32_t method) {
    zip_source_t* source = zip_source_buffer(archive, file.bytes.data(), file.bytes.size(), 0);
    if (source == nullptr) fail(zip_strerror(archive));
    const zip_int64_t index = zip_file_add(archive, file.path, source, ZIP_FL_ENC_UTF_8);
    if (index < 0) {
        zip_source_free(source);
        fail(zip_strerror(archive));
    }
    zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), method, 0);
}

void finish(Archive archive) {
    if (zip_close(archive.get()) != 0) fail(zip_strerror(archive.get()));
    static_cast<void>(archive.release());  // closing freed it
}

std::string contentOf(const std::filesystem::path& path) {
    auto bytes = readRegularFile(path, std::numeric_limits<std::int64_t>::max());
    if (!bytes) throw ExportError(ExportError::Kind::fileWriteFailed);
    return *std::move(bytes);
}

std::string makeArchive(const std::vector<BookFile>& files) {
    const WorkingFolder folder;
    const auto path = folder.path() / "book.epub";
    Archive archive = openArchive(path);
    zip_int32_t method = ZIP_CM_STORE;
    for (const auto& file : files) {
        addFile(archive.get(), file, method);
        method = ZIP_CM_DEFLATE;
    }
    finish(std::move(archive));
    return contentOf(path);
}

}  // namespace

std::string bookArchive(const std::vector<BookFile>& files) {
    try {
        return makeArchive(files);
    } catch (const std::filesystem::filesystem_error& error) {
        fail(error.code().message());
    }
}

}  // namespace corvel
