#include "ui/NoteRow.h"

#include "app/Texts.h"
#include "ui/Accessible.h"
#include "ui/RelativeDate.h"

namespace corvel {

namespace {

constexpr int kLineGap = 2;
constexpr int kGap = 8;

std::string titleOf(const NoteSummary& note, const Localisation& texts) {
    return note.title.empty() ? texts(texts::untitled) : note.title;
}

void makeOneLine(Gtk::Label& label) {
    label.set_xalign(0);
    label.set_ellipsize(Pango::EllipsizeMode::END);
    label.set_single_line_mode(true);
}

}  // namespace

std::string accessibleNameOf(const NoteSummary& note, const Localisation& texts) {
    std::string name =
        titleOf(note, texts) + ", " + relativeDate(note.modifiedAt, Date::now(), texts);
    if (note.isPinned) name += std::string(", ") + texts(texts::pinned);
    return name;
}

NoteRow::NoteRow() : Gtk::Box(Gtk::Orientation::VERTICAL, kLineGap) {
    add_css_class("note-row");
    m_pin.set_from_icon_name("corvel-pin-symbolic");
    m_pin.set_pixel_size(14);
    m_title.add_css_class("note-title");
    m_title.set_hexpand(true);
    m_excerpt.add_css_class("note-excerpt");
    m_date.add_css_class("note-date");
    makeOneLine(m_title);
    makeOneLine(m_excerpt);
    auto* titleLine = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap - 2);
    titleLine->append(m_pin);
    titleLine->append(m_title);
    auto* lastLine = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
    lastLine->append(m_date);
    for (auto& tag : m_tags) {
        makeOneLine(tag);
        tag.add_css_class("tag-chip");
        lastLine->append(tag);
    }
    append(*titleLine);
    append(m_excerpt);
    append(*lastLine);
}

void NoteRow::show(const std::optional<NoteSummary>& note, const Localisation& texts) {
    const NoteSummary shown = note.value_or(NoteSummary{});
    m_pin.set_visible(shown.isPinned);
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
