#pragma once

#include "app/Session.h"
#include "library/ImageKeeper.h"
#include "ui/ImageSource.h"
#include "ui/Toasts.h"

#include <gtkmm/filechoosernative.h>
#include <gtkmm/textview.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// Brings images into the open note: dropped on its text, pasted or chosen. They become attachments
/// and their Markdown one undo step.
class ImageFlow {
public:
    /// `view` shows the text of the session's open note. All must outlive the flow.
    ImageFlow(Session& session, Toasts& toasts, Gtk::TextView& view);
    ImageFlow(const ImageFlow&) = delete;
    ImageFlow& operator=(const ImageFlow&) = delete;
    ~ImageFlow();

    void chooseFiles();
    /// Files dropped on the text that are no images.
    sigc::signal<void(const ImageSource::Paths&)>& signalOtherFiles() { return m_otherFiles; }

private:
    struct Place;
    class Batch;

    void followDrops();
    bool drop(GdkDrop* drop, double x, double y);
    void followPaste();
    /// True when the clipboard is dealt with here instead of being pasted as text.
    bool paste();
    Place placeAt(const Gtk::TextBuffer::iterator& position, bool replacesSelection);
    void filesArrived(const ImageSource::Paths& paths, Place place);
    void takeFiles(const ImageSource::Paths& paths, Place place, std::function<void()> after = {});
    void takeBytes(ImageSource::Bytes bytes, const Place& place);
    void insert(const Place& place, const std::string& markdown);
    bool isOpen(const Place& place) const;
    void say(const std::vector<std::pair<std::string, ImageFault>>& problems);

    Session& m_session;
    Toasts& m_toasts;
    Gtk::TextView& m_view;
    ImageKeeper m_keeper;
    Glib::RefPtr<Gio::Cancellable> m_alive;  // cancelled when the flow dies
    Glib::RefPtr<Gtk::FileChooserNative> m_chooser;
    sigc::signal<void(const ImageSource::Paths&)> m_otherFiles;
};

}  // namespace corvel
