#pragma once

#include "platform/Uuid.h"

#include <gdkmm/contentprovider.h>
#include <glibmm/object.h>

#include <vector>

namespace corvel {

/// The notes of a drag within the program.
class NoteDrag : public Glib::Object {
public:
    static Glib::RefPtr<NoteDrag> create(std::vector<Uuid> noteIDs);

    /// What a drop target has to accept.
    static GType type();
    static Glib::RefPtr<Gdk::ContentProvider> content(std::vector<Uuid> noteIDs);
    /// The notes in what was dropped; empty when it is something else.
    static std::vector<Uuid> notesIn(const Glib::ValueBase& dropped);

private:
    explicit NoteDrag(std::vector<Uuid> noteIDs);

    std::vector<Uuid> m_noteIDs;
};

}  // namespace corvel
