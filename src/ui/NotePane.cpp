#include "ui/NotePane.h"

#include "app/Texts.h"
#include "app/texts/EditorTexts.h"
#include "ui/Accessible.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerkey.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

constexpr const char* kNotePage = "note";
constexpr const char* kEmptyPage = "empty";
constexpr const char* kSeveralPage = "several";
constexpr const char* kScrolledNote = "scrolledNote";
constexpr const char* kScrollPlace = "scrollPlace";

}  // namespace

NotePane::NotePane(Session& session, LinkedFileBar::Callbacks linkedFile)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_header(session)
    , m_note(Gtk::Orientation::VERTICAL)
    , m_fileBar(session, std::move(linkedFile))
    , m_body(Gtk::Orientation::HORIZONTAL)
    , m_editor(session.preferences, session.themes)
    , m_tools(session, m_editor)
    , m_preview(session, {{}, folderOfOpenFile(session)})
    , m_status(session)
    , m_several(session) {
    add_css_class("corvel-note");
    build();
    buildTrashBar();
    buildEmptyState();
    follow();
    followScrolling();
    relabel();
    applyMode();
    noteOpened();
    if (m_shownID) render(m_session.editor.note()->content);
}

NotePane::~NotePane() {
    m_session.editor.setTextSource({});
}

void NotePane::build() {
    m_title.add_css_class("note-name");
    m_title.set_has_frame(false);
    m_body.add_css_class("note-body");
    m_body.set_vexpand(true);
    m_body.set_start_child(m_tools);
    m_body.set_end_child(m_preview);
    m_body.set_resize_start_child(true);
    m_body.set_resize_end_child(true);
    m_body.set_shrink_start_child(false);
    m_body.set_shrink_end_child(false);
    m_editor.set_size_request(160, -1);
    m_preview.set_size_request(160, -1);
    m_note.append(m_title);
    m_note.append(m_trashBar);
    m_note.append(m_fileBar);
    m_note.append(m_tools.findBar());
    m_note.append(m_body);
    m_note.append(m_status);
    m_stack.add(m_note, kNotePage);
    m_stack.set_vexpand(true);
    append(headerBar());
    append(m_stack);
}

void NotePane::buildTrashBar() {
    auto& bar = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
    bar.add_css_class("note-notice");
    m_trashText.set_hexpand(true);
    m_trashText.set_xalign(0);
    m_trashText.set_wrap(true);
    m_restore.signal_clicked().connect([this] {
        if (m_shownID) m_session.list.restoreFromTrash({*m_shownID});
    });
    bar.append(m_trashText);
    bar.append(m_restore);
    m_trashBar.set_child(bar);
}

void NotePane::buildEmptyState() {
    m_create.add_css_class("pill");
    m_create.set_halign(Gtk::Align::CENTER);
    m_create.set_action_name(std::string("win.") +
                             AppCommands::command(CommandID::newNote).actionName);
    m_empty.setChild(m_create);
    m_empty.widget().set_vexpand(true);
    m_stack.add(m_empty.widget(), kEmptyPage);
    m_stack.add(m_several.widget(), kSeveralPage);
    m_empty.widget().set_visible(false);
    m_several.widget().set_visible(false);
}

// There is nothing to select before the first note, which the list offers to make.
void NotePane::labelEmptyState() {
    const auto& say = m_session.texts;
    const bool hasNotes = m_session.sidebar.allNotesCount > 0;
    m_empty.set("accessories-text-editor-symbolic",
                say(hasNotes ? texts::noNoteOpen : texts::noNoteYet),
                hasNotes ? say(texts::noNoteOpenDetail) : "");
}

// The stack measures its other pages too, and large text takes long: those are hidden.
void NotePane::showPage() {
    const bool hasSeveral = !m_shownID && m_session.state.hasSeveralSelected();
    if (!m_shownID) m_several.refresh();
    if (!m_shownID) (hasSeveral ? m_several.widget() : m_empty.widget()).set_visible(true);
    const char* unopened = hasSeveral ? kSeveralPage : kEmptyPage;
    m_stack.set_visible_child(m_shownID ? kNotePage : unopened);
    m_several.widget().set_visible(hasSeveral);
    m_empty.widget().set_visible(!m_shownID && !hasSeveral);
}

void NotePane::follow() {
    auto& editor = m_session.editor;
    editor.setTextSource([this] { return m_editor.text(); });
    m_editor.signalEdited().connect([this](const TextEdit& edit) { contentEdited(edit); });
    m_title.signal_changed().connect([this] { titleChanged(); });
    followTitleKeys();

    const auto keep = [this](const sigc::connection& connection) {
        m_connections.emplace_back(connection);
    };
    keep(editor.signalOpened().connect([this] { noteOpened(); }));
    keep(editor.signalRender().connect([this](const std::string& text) { render(text); }));
    keep(editor.signalStateChanged().connect([this] { noteStateChanged(); }));
    keep(editor.signalSaveStateChanged().connect([this] { m_status.refreshSaveState(); }));
    keep(editor.signalDerivedChanged().connect([this] {
        m_status.refreshCounts();
        if (std::exchange(m_isFilling, true)) return;
        const std::string title = m_session.editor.title();
        if (m_title.get_text().raw() != title) m_title.set_text(title);
        m_isFilling = false;
    }));
    keep(m_session.sidebar.signalChanged().connect([this] { labelEmptyState(); }));
    keep(m_session.state.editorMode.signalChanged().connect([this] { applyMode(); }));
    keep(m_session.state.selectedCount.signalChanged().connect([this] { showPage(); }));
    keep(m_session.sidebar.signalChanged().connect([this] { m_status.refreshFolders(); }));
    keep(m_session.preferences.signalChanged().connect([this](const std::string& key) {
        if (key == "appLanguage") relabel();
    }));
}

void NotePane::followTitleKeys() {
    m_title.signal_activate().connect([this] { focusEditor(); });
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType) {
            if (key != GDK_KEY_Down) return false;
            focusEditor();
            return true;
        },
        false);
    m_title.add_controller(keys);
}

void NotePane::noteOpened() {
    const auto& note = m_session.editor.note();
    const auto id = note ? std::optional(note->id) : std::nullopt;
    const bool isAnother = id != m_shownID;
    m_isAnother = m_isAnother || isAnother;
    m_shownID = id;
    m_header.setHasNote(note.has_value());
    const bool hadFocus = m_editor.hasTextFocus();
    showPage();
    if (!note) {
        m_editor.close();
        if (hadFocus) m_create.grab_focus();
        return;
    }
    m_isFilling = true;
    m_title.set_text(m_session.editor.title());
    m_isFilling = false;
    m_editor.open(note->id, note->content);
    if (isAnother) m_place = placeOf(*note);
    m_hasOpened = true;
    if (isAnother && m_place > 0) m_editorScroll.restore(m_place);
    noteStateChanged();
}

// Where it was left: in this run, or, of the first note, in the one before.
double NotePane::placeOf(const Note& note) const {
    const auto& store = m_session.preferences.store();
    if (!m_hasOpened && store.string(kScrolledNote) == note.id.toString())
        return std::clamp(store.real(kScrollPlace).value_or(0), 0.0, 1.0);
    return m_session.editor.scroll().scrollPercent();
}

void NotePane::rememberScroll() const {
    const auto& note = m_session.editor.note();
    if (!note) return;
    const auto& scroll = m_session.editor.scroll();
    const bool hasMoved = scroll.scrollSource() != ScrollSource::none;
    auto& store = m_session.preferences.store();
    store.setString(kScrolledNote, note->id.toString());
    store.setReal(kScrollPlace, hasMoved ? scroll.scrollPercent() : m_place);
}

void NotePane::noteStateChanged() {
    const auto& note = m_session.editor.note();
    if (!note) return;
    m_editor.setReadOnly(note->isTrashed);
    m_title.set_editable(!note->isTrashed);
    m_trashBar.set_reveal_child(note->isTrashed);
    m_trashBar.set_visible(note->isTrashed);
    m_header.followFile();
    m_status.refresh(statusNotice());
    m_tools.findBar().setPartial(m_editor.isPartial());
}

void NotePane::contentEdited(const TextEdit& edit) {
    if (m_editor.isInPieces()) {
        m_session.editor.contentEdited();
    } else {
        m_session.editor.contentEdited(edit);
    }
}

void NotePane::titleChanged() {
    if (!m_isFilling) m_session.editor.titleEdited(m_title.get_text());
}

void NotePane::render(const std::string& markdown) {
    const bool isAnother = std::exchange(m_isAnother, false);
    m_preview.show(markdown, isAnother ? std::optional(m_place) : std::nullopt);
}

void NotePane::followScrolling() {
    auto& scroll = m_session.editor.scroll();
    m_editorScroll.signalScrolled().connect(
        [&scroll](double percent) { scroll.editorScrolled(percent); });
    m_preview.onScrollChanged = [&scroll](double percent) { scroll.previewScrolled(percent); };
    m_connections.emplace_back(scroll.signalScrolled().connect([this, &scroll] {
        m_preview.setScroll(scroll.scrollPercent(), scroll.scrollSource());
        if (scroll.scrollSource() == ScrollSource::preview) {
            m_editorScroll.set(scroll.scrollPercent());
        }
    }));
}

void NotePane::applyMode() {
    const EditorMode mode = m_session.state.editorMode.get();
    const bool hadFocus = m_editor.hasTextFocus();
    const bool wasRead =
        !m_tools.get_visible() &&
        (m_preview.get_state_flags() & Gtk::StateFlags::FOCUS_WITHIN) != Gtk::StateFlags{};
    m_tools.set_visible(mode != EditorMode::preview);
    m_preview.set_visible(mode != EditorMode::editor);
    m_header.followMode();
    if (hadFocus && mode == EditorMode::preview)
        m_preview.child_focus(Gtk::DirectionType::TAB_FORWARD);
    if (wasRead && mode != EditorMode::preview) m_editor.focusText();
}

std::string NotePane::statusNotice() const {
    if (m_editor.isPartial()) return m_session.texts(texts::noteIsPartial);
    if (m_editor.isLarge()) return m_session.texts(texts::noteIsLarge);
    return m_editor.isInPieces() ? m_session.texts(texts::lineInPieces) : "";
}

void NotePane::relabel() {
    const auto& say = m_session.texts;
    m_header.relabel();
    m_preview.relabel();
    m_tools.relabel();
    m_fileBar.refresh();
    setAccessibleLabel(m_title, say(texts::noteTitle));
    m_title.set_placeholder_text(say(texts::titlePlaceholder));
    m_editor.setLabel(say(texts::noteText));
    setAccessibleLabel(m_body, say(texts::editorAndPreview));
    m_trashText.set_text(say(texts::noteIsTrashed));
    m_restore.set_label(say(texts::restore));
    labelEmptyState();
    m_create.set_label(say(texts::createNote));
    m_several.refresh();
    m_status.refresh(statusNotice());
}

void NotePane::focusEditor() {
    if (m_session.state.editorMode.get() == EditorMode::preview) {
        m_preview.child_focus(Gtk::DirectionType::TAB_FORWARD);
    } else {
        m_editor.focusText();
    }
}

void NotePane::focusTitle() {
    m_title.grab_focus();
}

}  // namespace corvel
