#include "ui/DifferenceView.h"

#include "app/texts/DifferenceTexts.h"
#include "platform/Text.h"
#include "ui/Accessible.h"
#include "ui/LongLines.h"

#include <adwaita.h>
#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/stylecontext.h>

#include <algorithm>

namespace corvel {

namespace {

using Kind = editing::DifferencePiece::Kind;

constexpr int kMargin = 12;
constexpr float kGroundAlpha = 0.22F;
// What is read aloud of a change.
constexpr std::size_t kMostTold = 500;

std::string told(const std::string& text) {
    const auto start = text::prefixByBytes(text, kMostTold);
    return std::string(start) + (start.size() < text.size() ? "…" : "");
}

}  // namespace

DifferenceView::DifferenceView(const Localisation& texts)
    : Gtk::Box(Gtk::Orientation::VERTICAL), m_texts(texts), m_bar(Gtk::Orientation::HORIZONTAL, 4) {
    build();
    addKeys();
    makeTags();
    const auto restyled = +[](GObject*, GParamSpec*, gpointer self) {
        static_cast<DifferenceView*>(self)->applyColors();
    };
    m_styleChanged.follow(adw_style_manager_get_default());
    for (const char* signal : {"notify::dark", "notify::high-contrast"})
        m_styleChanged.connect(signal, G_CALLBACK(restyled), this);
    signal_map().connect([this] { applyColors(); });
    relabel();
}

void DifferenceView::build() {
    add_css_class("difference-view");
    m_bar.add_css_class("difference-bar");
    m_status.set_hexpand(true);
    m_status.set_xalign(0);
    m_status.set_ellipsize(Pango::EllipsizeMode::END);
    m_status.add_css_class("dim-label");
    m_previous.set_icon_name("go-up-symbolic");
    m_next.set_icon_name("go-down-symbolic");
    m_previous.signal_clicked().connect([this] { go(-1); });
    m_next.signal_clicked().connect([this] { go(1); });
    m_bar.append(m_status);
    for (auto* button : {&m_previous, &m_next}) {
        button->add_css_class("flat");
        m_bar.append(*button);
    }
    m_text.set_editable(false);
    m_text.set_cursor_visible(false);
    m_text.set_accepts_tab(false);
    m_text.set_left_margin(kMargin);
    m_text.set_right_margin(kMargin);
    m_text.set_bottom_margin(kMargin);
    m_text.set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
    m_text.add_css_class("difference-text");
    longlines::watchInsertions(m_text.get_buffer()->gobj());
    longlines::watchClipboard(m_text.gobj());
    m_scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    m_scroller.set_child(m_text);
    m_scroller.set_expand(true);
    Gtk::Box::append(m_bar);
    Gtk::Box::append(m_scroller);
}

void DifferenceView::addKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            if ((modifiers & Gdk::ModifierType::ALT_MASK) == Gdk::ModifierType{}) return false;
            if (key != GDK_KEY_Down && key != GDK_KEY_Up) return false;
            go(key == GDK_KEY_Down ? 1 : -1);
            return true;
        },
        false);
    add_controller(keys);
}

void DifferenceView::makeTags() {
    const auto buffer = m_text.get_buffer();
    m_removedTag = buffer->create_tag("removed");
    m_removedTag->property_strikethrough() = true;
    m_addedTag = buffer->create_tag("added");
    m_addedTag->property_underline() = Pango::Underline::SINGLE;
    m_foldedTag = buffer->create_tag("folded");
    m_foldedTag->property_justification() = Gtk::Justification::CENTER;
}

// The toolkit's colours for what went well and what went wrong, as a ground the text stays readable
// on.
void DifferenceView::applyColors() {
    const auto style = get_style_context();
    const auto put = [&](const char* name, const Glib::RefPtr<Gtk::TextTag>& tag) {
        Gdk::RGBA color;
        if (!style->lookup_color(name, color)) return;
        color.set_alpha(kGroundAlpha);
        tag->property_background_rgba() = color;
    };
    put("error_color", m_removedTag);
    put("success_color", m_addedTag);
}

void DifferenceView::clear() {
    m_changes.clear();
    m_folds.clear();
    m_current = -1;
    m_text.get_buffer()->set_text("");
    tell();
}

void DifferenceView::show(const std::string& before, const std::string& after) {
    clear();
    const auto runs = editing::differencesOf(before, after);
    for (const auto& piece : editing::piecesOf(before, after, runs))
        append(piece);
    m_text.get_buffer()->place_cursor(m_text.get_buffer()->begin());
    tell();
}

void DifferenceView::append(const editing::DifferencePiece& piece) {
    const auto buffer = m_text.get_buffer();
    if (piece.kind == Kind::folded) return appendFold(piece);
    const std::string text = text::repaired(piece.text);
    if (piece.kind == Kind::kept) {
        buffer->insert(buffer->end(), text);
        return;
    }
    const int begin = buffer->get_char_count();
    const bool isRemoved = piece.kind == Kind::removed;
    buffer->insert_with_tag(buffer->end(), text, isRemoved ? m_removedTag : m_addedTag);
    if (piece.change >= m_changes.size()) m_changes.push_back({begin, begin, {}, {}});
    auto& change = m_changes.back();
    change.end = buffer->get_char_count();
    (isRemoved ? change.removed : change.added) = told(text);
}

// A line that holds nothing but the button.
void DifferenceView::appendFold(const editing::DifferencePiece& piece) {
    const auto buffer = m_text.get_buffer();
    const int start = buffer->get_char_count();
    const auto anchor = buffer->create_child_anchor(buffer->end());
    buffer->insert(buffer->end(), "\n");
    buffer->apply_tag(m_foldedTag, buffer->get_iter_at_offset(start), buffer->end());
    auto& button = *Gtk::make_managed<Gtk::Button>("");
    button.add_css_class("difference-fold");
    button.set_cursor("default");
    button.signal_clicked().connect([this, &button] { unfold(&button); });
    m_text.add_child_at_anchor(button, anchor);
    m_folds.push_back({anchor, &button, std::string(piece.text), piece.lines});
    label(m_folds.back());
}

void DifferenceView::label(const Fold& fold) {
    fold.button->set_label(m_texts.format(texts::showUnchangedLines, {std::to_string(fold.lines)}));
}

void DifferenceView::unfold(Gtk::Button* button) {
    const auto found = std::ranges::find(m_folds, button, &Fold::button);
    if (found == m_folds.end()) return;
    const Fold fold = std::move(*found);
    m_folds.erase(found);
    m_text.grab_focus();  // the button goes with its line
    const auto buffer = m_text.get_buffer();
    const int count = buffer->get_char_count();
    const auto start = buffer->get_iter_at_child_anchor(fold.anchor);
    const int offset = start.get_offset();
    auto end = start;
    end.forward_line();
    buffer->insert(buffer->erase(start, end), text::repaired(fold.text));
    const int added = buffer->get_char_count() - count;
    for (auto& change : m_changes) {
        if (change.begin < offset) continue;
        change.begin += added;
        change.end += added;
    }
}

std::vector<Gtk::Button*> DifferenceView::foldButtons() const {
    std::vector<Gtk::Button*> buttons;
    for (const auto& fold : m_folds)
        buttons.push_back(fold.button);
    return buttons;
}

void DifferenceView::go(int step) {
    if (m_changes.empty()) return;
    const int count = static_cast<int>(m_changes.size());
    const int from = m_current < 0 && step < 0 ? 0 : m_current;
    m_current = ((from + step) % count + count) % count;
    const auto& change = m_changes[static_cast<std::size_t>(m_current)];
    const auto buffer = m_text.get_buffer();
    buffer->select_range(buffer->get_iter_at_offset(change.begin),
                         buffer->get_iter_at_offset(change.end));
    m_text.scroll_to(buffer->get_insert(), 0.1);
    tell();
}

void DifferenceView::tell() {
    const auto count = std::to_string(m_changes.size());
    for (auto* button : {&m_previous, &m_next})
        button->set_sensitive(!m_changes.empty());
    std::string spoken;
    if (m_changes.empty()) {
        m_status.set_text(m_texts(texts::noDifferences));
    } else if (m_current < 0) {
        m_status.set_text(m_texts.format(texts::changeCount, {count}));
    } else {
        m_status.set_text(m_texts.format(texts::changeOf, {std::to_string(m_current + 1), count}));
        const auto& change = m_changes[static_cast<std::size_t>(m_current)];
        if (!change.removed.empty())
            spoken += ". " + m_texts.format(texts::removedText, {change.removed});
        if (!change.added.empty())
            spoken += ". " + m_texts.format(texts::addedText, {change.added});
    }
    setAccessibleLabel(m_status, m_status.get_text().raw() + spoken);
}

void DifferenceView::relabel() {
    setAccessibleLabel(m_text, m_texts(texts::differences));
    const std::string previous = m_texts(texts::previousChange);
    const std::string next = m_texts(texts::nextChange);
    labelControl(m_previous, previous, previous + " (Alt+↑)");
    labelControl(m_next, next, next + " (Alt+↓)");
    for (const auto& fold : m_folds)
        label(fold);
    tell();
}

}  // namespace corvel
