#include "ui/EditingController.h"

#include "app/editing/BlockCommands.h"
#include "app/editing/EmphasisCommand.h"
#include "app/editing/ListEditing.h"
#include "platform/Handle.h"
#include "ui/LongLines.h"

#include <gdk/gdkkeysyms.h>
#include <gdkmm/clipboard.h>
#include <glibmm/main.h>
#include <gtkmm/eventcontrollerkey.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace corvel {

namespace {

// How far around the cursor lists are looked at.
constexpr int kListLinesBefore = 100;
constexpr int kListLinesAfter = 300;
constexpr int kFenceLines = 2000;
constexpr int kLineStart = 300;  // characters of a line that tell what it begins
constexpr int kMostWrapped = 100'000;
// A clipboard owner that does not answer is not waited for.
constexpr unsigned kClipboardPatience = 300;

EditingController& controller(gpointer self) {
    return *static_cast<EditingController*>(self);
}

GtkTextIter cursorOf(GtkTextBuffer* buffer) {
    GtkTextIter cursor;
    gtk_text_buffer_get_iter_at_mark(buffer, &cursor, gtk_text_buffer_get_insert(buffer));
    return cursor;
}

bool isOneCharacter(std::string_view text) {
    return !text.empty() && text.size() <= 4 &&
           g_utf8_strlen(text.data(), static_cast<gssize>(text.size())) == 1;
}

}  // namespace

EditingController::EditingController(Gtk::TextView& view, const Preferences& preferences)
    : m_view(view)
    , m_preferences(preferences)
    , m_index([this](int line) { return startOfLine(line); }) {
    addKeys();
    m_viewSignals.follow(view.gobj());
    m_viewSignals.connect("backspace", G_CALLBACK(backspace), this);
    m_viewSignals.connect("paste-clipboard", G_CALLBACK(+[](GtkTextView*, gpointer self) {
                              controller(self).m_isPasting = true;
                          }),
                          this);
    m_bufferChanged = view.property_buffer().signal_changed().connect([this] { followBuffer(); });
    followBuffer();
}

EditingController::~EditingController() {
    m_view.remove_controller(m_keys);
}

void EditingController::followBuffer() {
    m_buffer = gtk_text_view_get_buffer(m_view.gobj());
    m_index.clear();
    m_userActions = 0;
    m_replaced.reset();
    m_isPasting = false;
    m_bufferSignals.follow(m_buffer);
    m_bufferSignals.connect("begin-user-action", G_CALLBACK(userActionBegan), this);
    m_bufferSignals.connect("end-user-action", G_CALLBACK(userActionEnded), this);
    m_bufferSignals.connect("insert-text", G_CALLBACK(beforeInsert), this);
    m_bufferSignals.connect("insert-text", G_CALLBACK(afterInsert), this, G_CONNECT_AFTER);
    m_bufferSignals.connect("delete-range", G_CALLBACK(beforeDelete), this);
    m_bufferSignals.connect("delete-range", G_CALLBACK(afterDelete), this, G_CONNECT_AFTER);
    m_bufferSignals.connect("paste-done",
                            G_CALLBACK(+[](GtkTextBuffer*, GdkClipboard*, gpointer self) {
                                controller(self).m_isPasting = false;
                            }),
                            this);
}

// --- what lines start in

std::string EditingController::startOfLine(int line) const {
    if (line >= gtk_text_buffer_get_line_count(m_buffer)) return {};
    GtkTextIter start;
    gtk_text_buffer_get_iter_at_line(m_buffer, &start, line);
    auto end = start;
    const int length = gtk_text_iter_get_chars_in_line(&start);
    gtk_text_iter_forward_chars(&end, std::min(length, kLineStart));
    const Handle<char, g_free> text(gtk_text_buffer_get_slice(m_buffer, &start, &end, TRUE));
    std::string content(text.get());
    content.erase(content.find_last_not_of("\r\n") + 1);
    return content;
}

editing::BlockState EditingController::stateAt(int line) {
    return m_index.stateAt(line).value_or(editing::BlockState{});
}

void EditingController::rememberLine(const GtkTextIter* at) {
    m_changedLine = gtk_text_iter_get_line(at);
    m_lineCount = gtk_text_buffer_get_line_count(m_buffer);
}

void EditingController::updateIndex() {
    const int added = gtk_text_buffer_get_line_count(m_buffer) - m_lineCount;
    m_index.textChanged(m_changedLine, std::max(0, -added), std::max(0, added));
}

void EditingController::afterInsert(GtkTextBuffer*, GtkTextIter*, const char*, int, gpointer self) {
    controller(self).updateIndex();
}

void EditingController::beforeDelete(GtkTextBuffer*,
                                     GtkTextIter* start,
                                     GtkTextIter* end,
                                     gpointer self) {
    controller(self).rememberLine(gtk_text_iter_compare(start, end) < 0 ? start : end);
}

void EditingController::afterDelete(GtkTextBuffer*, GtkTextIter*, GtkTextIter*, gpointer self) {
    controller(self).updateIndex();
}

// --- typing

void EditingController::userActionBegan(GtkTextBuffer* buffer, gpointer self) {
    auto& me = controller(self);
    if (me.m_userActions++ > 0 || me.m_isApplying) return;
    me.m_replaced.reset();
    GtkTextIter start;
    GtkTextIter end;
    if (gtk_text_buffer_get_selection_bounds(buffer, &start, &end) == 0) return;
    const int begin = gtk_text_iter_get_offset(&start);
    if (gtk_text_iter_get_offset(&end) - begin > kMostWrapped) return;
    const auto cursor = cursorOf(buffer);
    const Handle<char, g_free> text(gtk_text_buffer_get_slice(buffer, &start, &end, TRUE));
    me.m_replaced = Replaced{begin, gtk_text_iter_equal(&cursor, &start) != 0, text.get()};
}

void EditingController::userActionEnded(GtkTextBuffer*, gpointer self) {
    auto& me = controller(self);
    if (me.m_userActions > 0) --me.m_userActions;
    if (me.m_userActions == 0) me.m_replaced.reset();
}

// All that is typed comes by here, also from input methods.
void EditingController::beforeInsert(
    GtkTextBuffer* buffer, GtkTextIter* at, const char* text, int length, gpointer self) {
    auto& me = controller(self);
    me.rememberLine(at);
    const bool isByUser = me.m_userActions > 0 && !me.m_isApplying && !me.m_isPasting;
    const std::string_view character(text, static_cast<std::size_t>(length));
    if (!isByUser || !isOneCharacter(character) || !me.m_preferences.autoCloseBrackets()) return;
    const bool isDone = me.m_replaced ? me.wrapped(at, character) : me.typed(at, character);
    if (!isDone) return;
    // The caller goes on from where the text would have been inserted.
    *at = cursorOf(buffer);
    g_signal_stop_emission_by_name(buffer, "insert-text");
}

bool EditingController::typed(GtkTextIter* at, std::string_view character) {
    const auto cursor = cursorOf(m_buffer);
    if (gtk_text_iter_equal(&cursor, at) == 0) return false;
    const auto excerpt = BufferExcerpt::nearCursor(m_buffer);
    const auto selection = editing::Selection::at(excerpt.selection().cursor);
    const auto place = placeOf(excerpt.text(), selection);
    const auto edit = editing::typed(excerpt.text(), selection, character, place);
    if (!edit) return false;
    apply(edit, excerpt);
    return true;
}

bool EditingController::wrapped(GtkTextIter* at, std::string_view character) {
    const auto replaced = std::exchange(m_replaced, std::nullopt);
    if (gtk_text_iter_get_offset(at) != replaced->begin) return false;
    const auto size = replaced->text.size();
    const auto selection =
        replaced->isCursorFirst ? editing::Selection{size, 0} : editing::Selection{0, size};
    const auto place = isInFence() ? editing::Place::code : editing::Place::text;
    const auto edit = editing::typed(replaced->text, selection, character, place);
    if (!edit) return false;
    // The selection is gone by now: the edit's text goes to its place, whole.
    const auto excerpt = BufferExcerpt::nearCursor(m_buffer);
    const auto begin = excerpt.selection().cursor;
    apply(editing::TextEdit{{begin, begin},
                            edit->replacement,
                            {begin + edit->selection.anchor, begin + edit->selection.cursor}},
          excerpt);
    return true;
}

bool EditingController::isInFence() {
    const auto cursor = cursorOf(m_buffer);
    if (longlines::isPiece(cursor)) return false;
    const auto kind = stateAt(gtk_text_iter_get_line(&cursor)).kind;
    return kind == editing::BlockState::Kind::fence ||
           kind == editing::BlockState::Kind::frontMatter;
}

editing::Place EditingController::placeOf(const std::string& text,
                                          const editing::Selection& selection) {
    if (isInFence()) return editing::Place::code;
    const auto cursor = selection.cursor;
    const bool isInSpan = cursor > 0 && contains(codeRangesIn(text), cursor) &&
                          contains(codeRangesIn(text), cursor - 1);
    return isInSpan ? editing::Place::code : editing::Place::text;
}

void EditingController::apply(const std::optional<editing::TextEdit>& edit,
                              const BufferExcerpt& excerpt) {
    if (!edit || !isEditable()) return;
    m_isApplying = true;
    excerpt.apply(*edit);
    m_isApplying = false;
    gtk_text_view_scroll_mark_onscreen(m_view.gobj(), gtk_text_buffer_get_insert(m_buffer));
}

void EditingController::backspace(GtkTextView* view, gpointer self) {
    auto& me = controller(self);
    if (!me.isEditable() || !me.m_preferences.autoCloseBrackets()) return;
    if (gtk_text_buffer_get_has_selection(me.m_buffer) != 0) return;
    const auto excerpt = BufferExcerpt::nearCursor(me.m_buffer);
    const auto edit = editing::erased(excerpt.text(), excerpt.selection());
    if (!edit) return;
    me.apply(edit, excerpt);
    g_signal_stop_emission_by_name(view, "backspace");
}

// --- keys

void EditingController::addKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            return keyPressed(key, modifiers);
        },
        false);
    m_keys = keys;
    m_view.add_controller(keys);
}

bool EditingController::keyPressed(guint key, Gdk::ModifierType modifiers) {
    m_isPasting = false;
    const auto watched = Gdk::ModifierType::SHIFT_MASK | Gdk::ModifierType::CONTROL_MASK |
                         Gdk::ModifierType::ALT_MASK | Gdk::ModifierType::SUPER_MASK;
    const auto held = modifiers & watched;
    const bool isPlain = held == Gdk::ModifierType{};
    const bool isShift = held == Gdk::ModifierType::SHIFT_MASK;
    if (!isEditable()) return false;
    switch (key) {
        case GDK_KEY_Return:
        case GDK_KEY_KP_Enter:
        case GDK_KEY_ISO_Enter:
            return isPlain && lineEnded();
        case GDK_KEY_Tab:
        case GDK_KEY_KP_Tab:
            return (isPlain || isShift) && indented(isPlain);
        case GDK_KEY_ISO_Left_Tab:
            return isShift && indented(false);
        default:
            return false;
    }
}

// An input method that is at work takes Enter and Tab itself.
bool EditingController::offeredToInputMethod() {
    const auto event =
        std::static_pointer_cast<Gtk::EventControllerKey>(m_keys)->get_current_event();
    return event && gtk_text_view_im_context_filter_keypress(
                        m_view.gobj(), const_cast<GdkEvent*>(event->gobj())) != 0;
}

bool EditingController::lineEnded() {
    const auto cursor = cursorOf(m_buffer);
    if (isInFence() || longlines::isPiece(cursor)) return false;
    const auto excerpt = BufferExcerpt::lines(m_buffer, kListLinesBefore, kListLinesAfter);
    const auto edit = editing::lineEnded(excerpt.text(), excerpt.selection());
    if (!edit) return false;
    if (!offeredToInputMethod()) apply(edit, excerpt);
    return true;
}

bool EditingController::indented(bool isDeeper) {
    const auto cursor = cursorOf(m_buffer);
    if (isInFence() || longlines::isPiece(cursor)) return false;
    const auto excerpt = BufferExcerpt::lines(m_buffer, kListLinesBefore, 0);
    const auto depth = isDeeper ? editing::Depth::deeper : editing::Depth::shallower;
    const auto edit = editing::indented(excerpt.text(), excerpt.selection(), depth);
    if (!edit) return false;
    if (!offeredToInputMethod()) apply(edit, excerpt);
    return true;
}

// --- commands

void EditingController::toggleEmphasis(editing::Emphasis kind) {
    if (isInFence()) return;
    const auto excerpt = BufferExcerpt::lines(m_buffer, 0, 0);
    apply(editing::toggledEmphasis(excerpt.text(), excerpt.selection(), kind), excerpt);
}

void EditingController::cycleHeading() {
    if (isInFence() || longlines::isPiece(cursorOf(m_buffer))) return;
    const auto excerpt = BufferExcerpt::lines(m_buffer, 0, 0);
    apply(editing::cycledHeading(excerpt.text(), excerpt.selection()), excerpt);
}

void EditingController::toggleTasks() {
    if (isInFence() || longlines::isPiece(cursorOf(m_buffer))) return;
    const auto excerpt = BufferExcerpt::lines(m_buffer, 0, 0);
    apply(editing::toggledTasks(excerpt.text(), excerpt.selection()), excerpt);
}

void EditingController::toggleCodeBlock() {
    if (longlines::isPiece(cursorOf(m_buffer))) return;
    GtkTextIter start;
    GtkTextIter end;
    gtk_text_buffer_get_selection_bounds(m_buffer, &start, &end);
    const auto state = stateAt(gtk_text_iter_get_line(&start));
    const auto excerpt = BufferExcerpt::lines(m_buffer, kFenceLines, kFenceLines);
    const bool isInFence = state.kind == editing::BlockState::Kind::fence;
    apply(editing::toggledCodeBlock(excerpt.text(), excerpt.selection(), isInFence), excerpt);
}

void EditingController::toggleLink() {
    if (isInFence()) return;
    const auto clipboard = m_view.get_clipboard();
    const auto formats = clipboard->get_formats();
    const bool hasText = formats->contain_gtype(G_TYPE_STRING) ||
                         formats->contain_mime_type("text/plain;charset=utf-8") ||
                         formats->contain_mime_type("text/plain");
    if (!hasText) return linkWith({});
    m_clipboardLate = Glib::signal_timeout().connect(
        [this] {
            linkWith({});
            return false;
        },
        kClipboardPatience);
    // The first of the two to come makes the link.
    const std::weak_ptr<Gtk::EventController> alive = m_keys;
    clipboard->read_text_async(
        [this, alive, clipboard](const Glib::RefPtr<Gio::AsyncResult>& result) {
            std::string text;
            try {
                text = clipboard->read_text_finish(result);
            } catch (const Glib::Error&) {
                text.clear();  // nothing that could be an address
            }
            if (alive.expired() || !m_clipboardLate.connected()) return;
            m_clipboardLate.disconnect();
            linkWith(text);
        });
}

void EditingController::linkWith(const std::string& clipboard) {
    const auto excerpt = BufferExcerpt::lines(m_buffer, 0, 0);
    apply(editing::toggledLink(excerpt.text(), excerpt.selection(), clipboard), excerpt);
}

}  // namespace corvel
