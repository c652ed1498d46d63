#pragma once

#include <libxml/tree.h>

namespace corvel {

/// True when `table` is made as a book's table must be: a caption, then sections in order or rows,
/// and in them nothing but rows of cells.
bool hasTableShape(const xmlNode* table);

}  // namespace corvel
