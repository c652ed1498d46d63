#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// A file of a book, by its path in the archive. `bytes` must live as long as this.
struct BookFile {
    const char* path;
    std::string_view bytes;
};

/// The ZIP container of a book: the first file is stored as it is, the others deflated, all in
/// this order. Throws ExportError when the archive cannot be made; what is written on the way lies
/// in a folder of its own below the temporary directory and is removed.
std::string bookArchive(const std::vector<BookFile>& files);

}  // namespace corvel
