#include "ui/ImageFlow.h"

#include "app/Texts.h"
#include "app/texts/ImageTexts.h"
#include "platform/Handle.h"
#include "ui/FilePaths.h"
#include "ui/UndoStep.h"

#include <glibmm/convert.h>
#include <glibmm/main.h>
#include <gtkmm/filefilter.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace corvel {

namespace {

/// Called an image by its name, whatever is in it.
bool isNamedImage(const std::filesystem::path& path) {
    const Handle<char, g_free> type(g_content_type_guess(path.c_str(), nullptr, 0, nullptr));
    return type && g_content_type_is_a(type.get(), "image/*") != FALSE;
}

const Text& textOf(ImageFault fault) {
    switch (fault) {
        case ImageFault::unreadable:
            return texts::imageUnreadable;
        case ImageFault::tooLarge:
            return texts::imageTooLarge;
        case ImageFault::notAnImage:
            return texts::imageNotAnImage;
        default:
            return texts::imageStoreRefused;
    }
}

}  // namespace

/// Where in which note an image goes once it has arrived.
struct ImageFlow::Place {
    Uuid noteID;
    Glib::RefPtr<Gtk::TextBuffer> buffer;
    Glib::RefPtr<Gtk::TextBuffer::Mark> mark;
    bool replacesSelection;
};

/// Files taken one at each turn of the loop, so that keys are answered in between.
class ImageFlow::Batch {
public:
    Batch(ImageFlow& flow, ImageSource::Paths paths, Place place, std::function<void()> after)
        : m_flow(flow)
        , m_alive(flow.m_alive)
        , m_paths(std::move(paths))
        , m_place(std::move(place))
        , m_after(std::move(after)) {}

    static void run(const std::shared_ptr<Batch>& batch) {
        Glib::signal_idle().connect([batch] { return batch->takeOne(); });
    }

private:
    bool takeOne() {
        if (m_alive->is_cancelled()) return false;
        if (m_next == m_paths.size()) {
            finish();
            return false;
        }
        const auto& path = m_paths[m_next++];
        auto taken = m_flow.m_keeper.takeFile(path, m_place.noteID);
        if (const auto* fault = std::get_if<ImageFault>(&taken)) {
            m_problems.emplace_back(Glib::filename_display_name(path.filename().string()), *fault);
        } else {
            if (!m_markdown.empty()) m_markdown += '\n';
            m_markdown += std::get<std::string>(taken);
        }
        return true;
    }

    void finish() {
        if (!m_markdown.empty()) m_flow.insert(m_place, m_markdown);
        m_flow.say(m_problems);
        if (m_after) m_after();
    }

    ImageFlow& m_flow;
    Glib::RefPtr<Gio::Cancellable> m_alive;
    ImageSource::Paths m_paths;
    Place m_place;
    std::function<void()> m_after;
    std::size_t m_next = 0;
    std::string m_markdown;
    std::vector<std::pair<std::string, ImageFault>> m_problems;
};

ImageFlow::ImageFlow(Session& session, Toasts& toasts, Gtk::TextView& view)
    : m_session(session)
    , m_toasts(toasts)
    , m_view(view)
    , m_keeper(session.library)
    , m_alive(Gio::Cancellable::create()) {
    followDrops();
    followPaste();
}

ImageFlow::~ImageFlow() {
    m_alive->cancel();
}

// Before the text view's own target, which would write the addresses of files into the text.
void ImageFlow::followDrops() {
    auto* target = gtk_drop_target_async_new(ImageSource::formats(), GDK_ACTION_COPY);
    gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(target), GTK_PHASE_CAPTURE);
    g_signal_connect(target, "accept",
                     G_CALLBACK(+[](GtkDropTargetAsync*, GdkDrop* offered, gpointer) -> gboolean {
                         auto* formats = gdk_drop_get_formats(offered);
                         if (ImageSource::hasFiles(formats)) return TRUE;
                         return ImageSource::hasImage(formats) && !ImageSource::hasText(formats);
                     }),
                     nullptr);
    g_signal_connect(target, "drop",
                     G_CALLBACK(+[](GtkDropTargetAsync*, GdkDrop* dropped, double x, double y,
                                    gpointer flow) -> gboolean {
                         return static_cast<ImageFlow*>(flow)->drop(dropped, x, y);
                     }),
                     this);
    gtk_widget_add_controller(GTK_WIDGET(m_view.gobj()), GTK_EVENT_CONTROLLER(target));
}

bool ImageFlow::drop(GdkDrop* drop, double x, double y) {
    if (!m_session.editor.note()) return false;
    // The view's own target, which the drop does not reach, would go on showing that it takes it.
    m_view.unset_state_flags(Gtk::StateFlags::DROP_ACTIVE);
    int textX = 0;
    int textY = 0;
    m_view.window_to_buffer_coords(Gtk::TextWindowType::WIDGET, static_cast<int>(x),
                                   static_cast<int>(y), textX, textY);
    Gtk::TextBuffer::iterator position;
    m_view.get_iter_at_location(position, textX, textY);
    const Place place = placeAt(position, false);
    const std::shared_ptr<GdkDrop> held(GDK_DROP(g_object_ref(drop)), g_object_unref);
    if (ImageSource::hasFiles(gdk_drop_get_formats(drop))) {
        ImageSource::readFiles(drop, m_alive, [this, held, place](const ImageSource::Paths& paths) {
            gdk_drop_finish(held.get(), paths.empty() ? GdkDragAction{} : GDK_ACTION_COPY);
            filesArrived(paths, place);
        });
    } else {
        const auto arrived = [this, held, place](ImageSource::Bytes bytes) {
            gdk_drop_finish(held.get(), bytes ? GDK_ACTION_COPY : GdkDragAction{});
            takeBytes(std::move(bytes), place);
        };
        ImageSource::readImage(drop, ImageKeeper::kLargest, m_alive, arrived);
    }
    return true;
}

void ImageFlow::followPaste() {
    g_signal_connect(m_view.gobj(), "paste-clipboard",
                     G_CALLBACK(+[](GtkTextView* view, gpointer flow) {
                         if (!static_cast<ImageFlow*>(flow)->paste()) return;
                         g_signal_stop_emission_by_name(view, "paste-clipboard");
                     }),
                     this);
}

bool ImageFlow::paste() {
    if (!m_session.editor.note() || !m_view.get_editable()) return false;
    auto* clipboard = gtk_widget_get_clipboard(GTK_WIDGET(m_view.gobj()));
    auto* formats = gdk_clipboard_get_formats(clipboard);
    const bool hasFiles = ImageSource::hasFiles(formats);
    if (!hasFiles && (ImageSource::hasText(formats) || !ImageSource::hasImage(formats)))
        return false;
    const Place place = placeAt(m_view.get_buffer()->get_insert()->get_iter(), true);
    if (!hasFiles) {
        ImageSource::readImage(
            clipboard, ImageKeeper::kLargest, m_alive,
            [this, place](ImageSource::Bytes bytes) { takeBytes(std::move(bytes), place); });
        return true;
    }
    ImageSource::readFiles(
        clipboard, m_alive, [this, place, clipboard](const ImageSource::Paths& paths) {
            if (std::ranges::any_of(paths, isNamedImage)) {
                takeFiles(paths, place);
            } else if (isOpen(place)) {
                gtk_text_buffer_paste_clipboard(place.buffer->gobj(), clipboard, nullptr, TRUE);
            }
        });
    return true;
}

void ImageFlow::chooseFiles() {
    const auto& texts = m_session.texts;
    if (!m_session.editor.note()) return;
    if (!m_view.get_editable()) return m_toasts.show(texts(texts::noteIsReadOnly));
    auto& parent = dynamic_cast<Gtk::Window&>(*m_view.get_root());
    m_chooser = Gtk::FileChooserNative::create(texts(texts::insertImages), parent,
                                               Gtk::FileChooser::Action::OPEN,
                                               texts(texts::insertVerb), texts(texts::cancel));
    m_chooser->set_modal(true);
    m_chooser->set_select_multiple(true);
    const auto images = Gtk::FileFilter::create();
    images->set_name(texts(texts::imageFiles));
    images->add_mime_type("image/*");
    const auto all = Gtk::FileFilter::create();
    all->set_name(texts(texts::allFiles));
    all->add_pattern("*");
    m_chooser->add_filter(images);
    m_chooser->add_filter(all);
    const Place place = placeAt(m_view.get_buffer()->get_insert()->get_iter(), true);
    m_chooser->signal_response().connect([this, place](int response) {
        const auto held = std::exchange(m_chooser, {});
        held->hide();
        if (response == GTK_RESPONSE_ACCEPT) takeFiles(chosenFiles(*held), place);
    });
    m_chooser->show();
}

ImageFlow::Place ImageFlow::placeAt(const Gtk::TextBuffer::iterator& position,
                                    bool replacesSelection) {
    const auto buffer = m_view.get_buffer();
    return {m_session.editor.note()->id, buffer, buffer->create_mark(position, true),
            replacesSelection};
}

// What is no image by its name goes where files dropped elsewhere in the window go.
void ImageFlow::filesArrived(const ImageSource::Paths& paths, Place place) {
    ImageSource::Paths images;
    ImageSource::Paths others;
    std::ranges::partition_copy(paths, std::back_inserter(images), std::back_inserter(others),
                                isNamedImage);
    // Behind the images: an import opens another note.
    const auto passOn = [this, others] {
        if (!others.empty()) m_otherFiles.emit(others);
    };
    if (images.empty()) return passOn();
    takeFiles(images, std::move(place), passOn);
}

void ImageFlow::takeFiles(const ImageSource::Paths& paths,
                          Place place,
                          std::function<void()> after) {
    if (!m_view.get_editable()) return m_toasts.show(m_session.texts(texts::noteIsReadOnly));
    Batch::run(std::make_shared<Batch>(*this, paths, std::move(place), std::move(after)));
}

void ImageFlow::takeBytes(ImageSource::Bytes bytes, const Place& place) {
    if (!m_view.get_editable()) return m_toasts.show(m_session.texts(texts::noteIsReadOnly));
    const std::string name = m_session.texts(texts::pastedImage);
    if (!bytes) return say({{name, ImageFault::unreadable}});
    const auto taken = m_keeper.take(*std::move(bytes), name, place.noteID);
    if (const auto* fault = std::get_if<ImageFault>(&taken)) return say({{name, *fault}});
    insert(place, std::get<std::string>(taken));
}

bool ImageFlow::isOpen(const Place& place) const {
    const auto& note = m_session.editor.note();
    return note && note->id == place.noteID && m_view.get_buffer() == place.buffer;
}

// Another note may be open by now; the image is then still where it came from.
void ImageFlow::insert(const Place& place, const std::string& markdown) {
    if (!isOpen(place)) return;
    const auto& buffer = place.buffer;
    buffer->begin_user_action();
    if (place.replacesSelection) buffer->erase_selection(false, true);
    const auto at = place.mark->get_iter();
    const auto tail = buffer->create_mark(at, false);
    insertAsUndoStep(*buffer.get(), at, markdown);
    buffer->place_cursor(tail->get_iter());
    buffer->delete_mark(tail);
    buffer->end_user_action();
    buffer->delete_mark(place.mark);
    m_view.scroll_to(buffer->get_insert());
    m_view.grab_focus();
}

void ImageFlow::say(const std::vector<std::pair<std::string, ImageFault>>& problems) {
    if (problems.empty()) return;
    const auto& texts = m_session.texts;
    const auto& [name, fault] = problems.front();
    m_toasts.show(problems.size() == 1
                      ? texts.format(texts::imageNotTaken, {name, texts(textOf(fault))})
                      : texts.format(texts::imagesNotTaken, {std::to_string(problems.size())}));
}

}  // namespace corvel
