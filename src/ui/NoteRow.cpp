#include "ui/NoteRow.h"

#include "app/Texts.h"
#include "app/texts/LinkedFileTexts.h"
#include "ui/Accessible.h"
#include "ui/LineHeight.h"
#include "ui/RelativeDate.h"

#include <algorithm>

namespace corvel {

namespace {

constexpr int kLineGap = 2;
constexpr int kGap = 8;
constexpr int kPin = 14;
constexpr int kNarrowest = 100;
/// Some letters and the chip's ends.
constexpr int kNarrowestTag = 40;

std::string titleOf(const NoteSummary& note, const Localisation& texts) {
    return note.title.empty() ? texts(texts::untitled) : note.title;
}

void makeOneLine(Gtk::Label& label) {
    label.set_xalign(0);
    label.set_ellipsize(Pango::EllipsizeMode::END);
    label.set_single_line_mode(true);
}

int naturalWidth(const Gtk::Label& label) {
    int minimum = 0;
    int natural = 0;
    int ignored = 0;
    label.measure(Gtk::Orientation::HORIZONTAL, -1, minimum, natural, ignored, ignored);
    return natural;
}

}  // namespace

std::string accessibleNameOf(const NoteSummary& note, const Localisation& texts) {
    std::string name =
        titleOf(note, texts) + ", " + relativeDate(note.modifiedAt, Date::now(), texts);
    if (note.isPinned) name += std::string(", ") + texts(texts::pinned);
    if (note.isLocalFile) name += std::string(", ") + texts(texts::localFile);
    return name;
}

NoteRow::NoteRow() : Glib::ObjectBase("CorvelNoteRow") {
    add_css_class("note-row");
    m_pin.set_from_icon_name("corvel-pin-symbolic");
    m_pin.set_pixel_size(kPin);
    m_file.add_css_class("note-file");
    m_file.set_from_icon_name("corvel-file-symbolic");
    m_file.set_pixel_size(kPin);
    m_title.add_css_class("note-title");
    m_excerpt.add_css_class("note-excerpt");
    m_date.add_css_class("note-date");
    makeOneLine(m_title);
    makeOneLine(m_excerpt);
    m_pin.set_parent(*this);
    m_file.set_parent(*this);
    m_title.set_parent(*this);
    m_excerpt.set_parent(*this);
    m_date.set_parent(*this);
    for (auto& tag : m_tags) {
        makeOneLine(tag);
        tag.add_css_class("tag-chip");
        tag.set_parent(*this);
    }
    signal_destroy().connect([this] { dropChildren(); });
}

NoteRow::~NoteRow() {
    dropChildren();
}

// The toolkit wants a widget's children gone before it is: the list may let its row go long before
// this object is destroyed.
void NoteRow::dropChildren() {
    if (m_pin.get_parent() == nullptr) return;
    m_pin.unparent();
    m_file.unparent();
    m_title.unparent();
    m_excerpt.unparent();
    m_date.unparent();
    for (auto& tag : m_tags) {
        tag.unparent();
    }
}

Gtk::SizeRequestMode NoteRow::get_request_mode_vfunc() const {
    return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

// A row without tags is as high as one with them: rows of one height scroll evenly.
NoteRow::LineHeights NoteRow::heights() const {
    return {lineHeight(m_title), lineHeight(m_excerpt),
            std::max(lineHeight(m_date), lineHeight(m_tags.front()))};
}

void NoteRow::measure_vfunc(Gtk::Orientation orientation,
                            int /*forSize*/,
                            int& minimum,
                            int& natural,
                            int& minimumBaseline,
                            int& naturalBaseline) const {
    minimumBaseline = naturalBaseline = -1;
    minimum = natural = kNarrowest;
    if (orientation == Gtk::Orientation::HORIZONTAL) return;
    const auto lines = heights();
    minimum = natural = lines.title + lines.excerpt + lines.last + 2 * kLineGap;
}

void NoteRow::size_allocate_vfunc(int width, int /*height*/, int /*baseline*/) {
    const auto lines = heights();
    placeTitle(width, lines.title);
    m_excerpt.size_allocate({0, lines.title + kLineGap, width, lines.excerpt}, -1);
    placeLast(lines.title + lines.excerpt + 2 * kLineGap, width, lines.last);
}

void NoteRow::placeTitle(int width, int height) {
    const int start = m_pin.get_visible() ? kPin + kGap - 2 : 0;
    const int end = m_file.get_visible() ? kPin + kGap : 0;
    if (start > 0) m_pin.size_allocate({0, 0, kPin, height}, -1);
    if (end > 0) m_file.size_allocate({std::max(0, width - kPin), 0, kPin, height}, -1);
    m_title.size_allocate({start, 0, std::max(0, width - start - end), height}, -1);
}

// Tags that have no room are left out.
void NoteRow::placeLast(int y, int width, int height) {
    const int date = std::min(naturalWidth(m_date), width);
    m_date.size_allocate({0, y, date, height}, -1);
    int x = date + kGap;
    for (auto& tag : m_tags) {
        if (!tag.get_visible()) continue;
        const int wanted = naturalWidth(tag);
        const int room = std::min(wanted, width - x);
        const bool fits = room >= std::min(wanted, kNarrowestTag);
        tag.set_child_visible(fits);
        if (!fits) continue;
        tag.size_allocate({x, y, room, height}, -1);
        x += room + kGap;
    }
}

void NoteRow::show(const std::optional<NoteSummary>& note, const Localisation& texts) {
    const NoteSummary shown = note.value_or(NoteSummary{});
    m_pin.set_visible(shown.isPinned);
    m_file.set_visible(shown.isLocalFile);
    m_title.set_text(note ? titleOf(shown, texts) : std::string());
    m_excerpt.set_text(shown.excerpt);
    m_date.set_text(note ? relativeDate(shown.modifiedAt, Date::now(), texts) : std::string());
    showTags(shown);
    // The list's own row widget is what assistive technology meets.
    if (auto* parent = get_parent(); parent != nullptr && note) {
        setAccessibleLabel(*parent, accessibleNameOf(shown, texts));
    }
}

void NoteRow::showTags(const NoteSummary& note) {
    for (std::size_t i = 0; i < kTags; ++i) {
        const bool isUsed = i < note.tagPaths.size();
        m_tags[i].set_visible(isUsed);
        m_tags[i].set_text(isUsed ? "#" + note.tagPaths[i] : std::string());
    }
}

}  // namespace corvel
