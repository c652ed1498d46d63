#include "ui/NoteDrag.h"

#include <utility>

namespace corvel {

NoteDrag::NoteDrag(std::vector<Uuid> noteIDs)
    : Glib::ObjectBase("CorvelNoteDrag"), m_noteIDs(std::move(noteIDs)) {}

Glib::RefPtr<NoteDrag> NoteDrag::create(std::vector<Uuid> noteIDs) {
    return Glib::make_refptr_for_instance(new NoteDrag(std::move(noteIDs)));
}

GType NoteDrag::type() {
    // The type comes into being with the first instance.
    static const GType known = G_OBJECT_TYPE(create({})->gobj());
    return known;
}

Glib::RefPtr<Gdk::ContentProvider> NoteDrag::content(std::vector<Uuid> noteIDs) {
    const auto drag = create(std::move(noteIDs));
    Glib::ValueBase value;
    value.init(type());
    g_value_set_object(value.gobj(), drag->gobj());
    return Gdk::ContentProvider::create(value);
}

std::vector<Uuid> NoteDrag::notesIn(const Glib::ValueBase& dropped) {
    if (!G_VALUE_HOLDS(dropped.gobj(), type())) return {};
    auto* object = static_cast<GObject*>(g_value_get_object(dropped.gobj()));
    const auto* drag = dynamic_cast<NoteDrag*>(Glib::wrap_auto(object, false));
    return drag == nullptr ? std::vector<Uuid>{} : drag->m_noteIDs;
}

}  // namespace corvel
