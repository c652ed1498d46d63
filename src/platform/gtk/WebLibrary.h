#pragma once

namespace corvel::weblibrary {

/// Loads WebKit. It takes half as long as an empty window's whole start, so the program is not
/// linked to it: calls of it go through a table that this fills. To be called before the first of
/// them, which WebRoom does; later calls cost nothing. Ends the program with a message when the
/// library is missing.
void load();

}  // namespace corvel::weblibrary
