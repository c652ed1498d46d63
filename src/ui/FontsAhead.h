#pragma once

#include "platform/Handle.h"

#include <pango/pango.h>

#include <thread>
#include <vector>

namespace corvel {

/// Loads the fonts of the window's texts, and the letters of them, in a thread while the main one
/// reads style sheets and opens the library. Only what is measured and drawn with `use` called
/// before gains by it; texts in other fonts or letters are as slow as they were.
class FontsAhead {
public:
    /// Begins, on the main thread, once the display is open. `scale` is that of the window's text.
    explicit FontsAhead(double scale);
    FontsAhead(const FontsAhead&) = delete;
    FontsAhead& operator=(const FontsAhead&) = delete;
    ~FontsAhead();

    /// From here on the main thread's texts are in these fonts. Waits until they are there.
    void use();

private:
    GObjectHandle<PangoFontMap> m_fonts;
    GObjectHandle<PangoContext> m_context;
    std::vector<Handle<PangoFontDescription, pango_font_description_free>> m_kinds;
    std::thread m_thread;
};

}  // namespace corvel
