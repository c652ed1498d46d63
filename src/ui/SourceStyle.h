#pragma once

#include "themes/Theme.h"

#include <gtksourceview/gtksource.h>

#include <string>

namespace corvel {

/// What the source view needs as files: the program's Markdown language and style schemes made from
/// themes. Both are written to the cache folder when they are missing.
namespace sourcestyle {

/// To be called before the first buffer is made, which would read all schemes of the system.
void useOwnSchemesOnly();
/// None when the language cannot be written: the text then stays in one colour.
GtkSourceLanguage* language();
/// The scheme of a theme's colours; none when it cannot be written.
GtkSourceStyleScheme* scheme(const Theme& theme);

/// A tag of the buffer in a style of its scheme, made when it is first asked for; it follows the
/// buffer's scheme from then on.
GtkTextTag* tag(GtkTextBuffer* buffer, const char* style);

/// The scheme as the file that is written.
std::string schemeXml(const Theme& theme, const std::string& id);

}  // namespace sourcestyle
}  // namespace corvel
