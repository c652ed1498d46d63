#include "ui/PaneLayout.h"

#include "app/Texts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "ui/Accessible.h"
#include "ui/TextScale.h"

#include <algorithm>

namespace corvel {

namespace {

constexpr int kSidebarSmallest = 180;
constexpr int kSidebarUsual = 236;
constexpr int kSidebarLargest = 360;
constexpr int kListSmallest = 220;
constexpr int kListUsual = 300;
constexpr int kListLargest = 480;
constexpr int kAssistantSmallest = 280;
constexpr int kAssistantUsual = 330;
constexpr int kAssistantLargest = 480;
/// Below this width the window shows two panes.
constexpr int kThreePanes = 900;
/// Without the sidebar the list's header bar has one button more.
constexpr int kListAlone = 258;
/// What the lines between the panes take.
constexpr int kHandles = 2;

constexpr const char* kSidebarWidthKey = "sidebarWidth";
constexpr const char* kListWidthKey = "listWidth";
constexpr const char* kAssistantWidthKey = "assistantWidth";
constexpr const char* kSidebarVisibleKey = "sidebarVisible";

/// Panes grow with the text, though less: the note has a claim too.
int scaled(int width) {
    constexpr double kMost = 1.35;
    return widthForText(width, kMost);
}

int smallestWidth(const Gtk::Widget& widget) {
    int smallest = 0;
    int natural = 0;
    int ignored = 0;
    widget.measure(Gtk::Orientation::HORIZONTAL, -1, smallest, natural, ignored, ignored);
    return smallest;
}

void join(Gtk::Paned& paned, Gtk::Widget& start, Gtk::Widget& end) {
    paned.set_start_child(start);
    paned.set_end_child(end);
    paned.set_resize_start_child(false);
    paned.set_shrink_start_child(false);
    // The window may become narrower than all panes need: then panes give way.
    paned.set_shrink_end_child(true);
}

}  // namespace

PaneLayout::PaneLayout(UserDefaults& defaults,
                       Gtk::Widget& sidebar,
                       Gtk::Widget& list,
                       Gtk::Widget& note)
    : m_defaults(defaults)
    , m_sidebar(sidebar)
    , m_list(list)
    , m_note(note)
    , m_sidebarWidth(std::clamp(defaults.integer(kSidebarWidthKey).value_or(scaled(kSidebarUsual)),
                                kSidebarSmallest,
                                scaled(kSidebarLargest)))
    , m_listWidth(std::clamp(defaults.integer(kListWidthKey).value_or(scaled(kListUsual)),
                             kListSmallest,
                             scaled(kListLargest)))
    , m_listBeside(kListSmallest)
    , m_listAlone(kListAlone)
    , m_assistantWidth(std::clamp(defaults.integer(kAssistantWidthKey).value_or(kAssistantUsual),
                                  kAssistantSmallest,
                                  kAssistantLargest))
    , m_wantsSidebar(defaults.boolean(kSidebarVisibleKey).value_or(true)) {
    sidebar.set_size_request(kSidebarSmallest, -1);
    list.set_size_request(kListSmallest, -1);
    note.set_hexpand(true);
    m_work.set_start_child(note);
    m_work.set_resize_start_child(true);
    m_work.set_shrink_start_child(false);
    m_work.set_resize_end_child(false);
    m_work.set_shrink_end_child(false);
    join(m_inner, list, m_work);
    join(m_outer, sidebar, m_inner);
    m_outer.property_position().signal_changed().connect([this] {
        limit(m_outer, m_sidebarWidth, kSidebarSmallest, sidebarRoom(scaled(kSidebarLargest)));
    });
    m_inner.property_position().signal_changed().connect(
        [this] { limit(m_inner, m_listWidth, kListSmallest, listRoom(scaled(kListLargest))); });
    m_work.property_position().signal_changed().connect([this] { assistantMoved(); });
    arrange();
}

void PaneLayout::setAssistant(Gtk::Widget& assistant) {
    m_assistant = &assistant;
    assistant.set_size_request(kAssistantSmallest, -1);
    assistant.set_visible(false);
    m_work.set_end_child(assistant);
    arrange();
}

void PaneLayout::showAssistant(bool isShown) {
    m_wantsAssistant = isShown;
    if (isShown) {
        m_isSidebarOver = false;
        m_isListOver = false;
    }
    arrange();
}

void PaneLayout::placeAssistant() {
    if (!isAssistantShown()) return;
    const int width = m_work.get_width() > 0 ? m_work.get_width() : workWidth();
    const int room = width - smallestWidth(m_note) - 1;
    const int wanted = std::max(smallestAssistant(), std::min(m_assistantWidth, room));
    m_work.set_position(width - wanted - 1);
}

void PaneLayout::assistantMoved() {
    if (m_isArranging || !isAssistantShown() || m_work.get_width() <= 0) return;
    const int width = m_work.get_width() - m_work.get_position() - 1;
    const int wanted = std::clamp(width, kAssistantSmallest, kAssistantLargest);
    if (width > wanted) m_work.set_position(m_work.get_width() - wanted - 1);
    m_assistantWidth = wanted;
}

void PaneLayout::relabel(const Localisation& texts) {
    setAccessibleLabel(m_outer, texts(texts::sidebarWidth));
    setAccessibleLabel(m_inner, texts(texts::listWidth));
    setAccessibleLabel(m_work, texts(texts::assistantWidth));
}

void PaneLayout::limit(Gtk::Paned& paned, int& width, int smallest, int largest) {
    if (m_isArranging || !paned.get_start_child()->get_visible()) return;
    const int position = paned.get_position();
    const int wanted = std::clamp(position, smallest, largest);
    width = wanted;
    if (wanted != position) paned.set_position(wanted);
}

void PaneLayout::remember() {
    m_defaults.setInteger(kSidebarWidthKey, m_sidebarWidth);
    m_defaults.setInteger(kListWidthKey, m_listWidth);
    m_defaults.setInteger(kAssistantWidthKey, m_assistantWidth);
    m_defaults.setBoolean(kSidebarVisibleKey, m_wantsSidebar);
}

void PaneLayout::setAvailableWidth(int width) {
    if (width == m_available || width <= 0) return;
    m_available = width;
    // Here the header bars have no pixel to spare; the style sheet tightens them.
    if (width < kThreePanes) {
        m_outer.add_css_class("narrow");
    } else {
        m_outer.remove_css_class("narrow");
    }
    arrange();
}

void PaneLayout::refit() {
    if (m_available > 0) arrange();
}

// Of the note, with the assistant if it is wanted beside it.
int PaneLayout::noteWidth() const {
    return smallestWidth(m_note) + (isAssistantShown() ? smallestAssistant() + 1 : 0);
}

int PaneLayout::smallestAssistant() const {
    return std::max(kAssistantSmallest, smallestWidth(*m_assistant));
}

int PaneLayout::workWidth() const {
    const int sidebar = m_sidebar.get_visible() ? m_outer.get_position() + 1 : 0;
    const int list = m_list.get_visible() ? m_inner.get_position() + 1 : 0;
    return m_available - sidebar - list;
}

// What a hidden list would need is not known: what it needed last is.
int PaneLayout::listAlone() {
    if (m_list.get_visible() && !m_sidebar.get_visible()) {
        m_listAlone = std::max(kListAlone, smallestWidth(m_list));
    }
    return m_listAlone;
}

// Of the list beside the sidebar. Its header bar may need more than the least width that is given
// to a list, as in Polish or with large text.
int PaneLayout::listBeside() {
    if (m_list.get_visible() && m_sidebar.get_visible()) {
        m_listBeside = std::max(kListSmallest, smallestWidth(m_list));
    }
    return m_listBeside;
}

bool PaneLayout::fitsAll() {
    return m_available == 0 ||
           (m_available >= kThreePanes &&
            m_available >= kSidebarSmallest + listBeside() + noteWidth() + 2 * kHandles);
}

bool PaneLayout::fitsTwo() {
    return m_available == 0 || m_available >= listAlone() + noteWidth() + kHandles;
}

// The note is never cut while sidebar and list can be narrower.
int PaneLayout::sidebarRoom(int wanted) const {
    if (m_available == 0) return wanted;
    const int list = m_list.get_visible() ? std::max(kListSmallest, smallestWidth(m_list)) : 0;
    return std::clamp(m_available - list - noteWidth() - kHandles, kSidebarSmallest, wanted);
}

int PaneLayout::listRoom(int wanted) const {
    if (m_available == 0) return wanted;
    const int sidebar = m_sidebar.get_visible() ? sidebarRoom(m_sidebarWidth) : 0;
    const int smallest =
        std::max(m_sidebar.get_visible() ? kListSmallest : kListAlone, smallestWidth(m_list));
    return std::max(smallest, std::min(wanted, m_available - sidebar - noteWidth() - kHandles));
}

void PaneLayout::toggleSidebar() {
    const bool isShown = m_sidebar.get_visible();
    const bool fits = m_available == 0 || m_available >= kThreePanes;
    if (fits) {
        m_wantsSidebar = !isShown;
        m_isSidebarOver = false;
    } else {
        m_isSidebarOver = !isShown;
    }
    arrange();
}

void PaneLayout::sidebarChosen() {
    if (!m_isSidebarOver) return;
    m_isSidebarOver = false;
    m_isListOver = true;
    arrange();
}

void PaneLayout::showList() {
    if (m_list.get_visible()) return;
    m_isSidebarOver = false;
    m_isListOver = true;
    arrange();
}

void PaneLayout::arrange() {
    if (m_isArranging) return;
    m_isArranging = true;
    const bool hadAssistant = isAssistantShown();
    const bool isOver = m_isSidebarOver || m_isListOver;
    if (m_assistant != nullptr) m_assistant->set_visible(m_wantsAssistant && !isOver);
    const bool allFit = fitsAll();
    if (allFit) m_isSidebarOver = false;
    if (fitsTwo()) m_isListOver = false;
    const bool showsSidebar = m_isSidebarOver || (allFit && m_wantsSidebar);
    const bool showsList = !m_isSidebarOver && (fitsTwo() || m_isListOver);
    const bool isNew = showsSidebar != m_sidebar.get_visible() ||
                       showsList != m_list.get_visible() || hadAssistant != isAssistantShown();
    m_sidebar.set_visible(showsSidebar);
    m_list.set_visible(showsList);
    m_outer.set_position(sidebarRoom(m_sidebarWidth));
    m_inner.set_position(listRoom(m_listWidth));
    if (isNew) placeAssistant();
    m_isArranging = false;
    if (!isNew) return;
    m_changed.emit();
    // The header bars have other buttons now, and only now it is known what they need.
    m_inner.set_position(listRoom(m_listWidth));
    const bool showsAll = m_sidebar.get_visible() && m_list.get_visible();
    const bool showsListAlone = !m_sidebar.get_visible() && m_list.get_visible() && !m_isListOver;
    if ((showsAll && !fitsAll()) || (showsListAlone && !fitsTwo())) arrange();
}

}  // namespace corvel
