#include "ui/SearchProvider.h"

#include <giomm/dbusintrospection.h>
#include <glibmm/variant.h>

#include <map>
#include <utility>

namespace corvel {

namespace {

constexpr const char* kInterface = R"(<node>
  <interface name="org.gnome.Shell.SearchProvider2">
    <method name="GetInitialResultSet">
      <arg type="as" name="terms" direction="in"/>
      <arg type="as" name="results" direction="out"/>
    </method>
    <method name="GetSubsearchResultSet">
      <arg type="as" name="previous_results" direction="in"/>
      <arg type="as" name="terms" direction="in"/>
      <arg type="as" name="results" direction="out"/>
    </method>
    <method name="GetResultMetas">
      <arg type="as" name="identifiers" direction="in"/>
      <arg type="aa{sv}" name="metas" direction="out"/>
    </method>
    <method name="ActivateResult">
      <arg type="s" name="identifier" direction="in"/>
      <arg type="as" name="terms" direction="in"/>
      <arg type="u" name="timestamp" direction="in"/>
    </method>
    <method name="LaunchSearch">
      <arg type="as" name="terms" direction="in"/>
      <arg type="u" name="timestamp" direction="in"/>
    </method>
  </interface>
</node>)";

constexpr const char* kIcon = "com.qno.corvel";

using Strings = std::vector<std::string>;

template <typename T>
T argument(const Glib::VariantContainerBase& parameters, gsize index) {
    Glib::Variant<T> child;
    parameters.get_child(child, index);
    return child.get();
}

Strings strings(const Glib::VariantContainerBase& parameters, gsize index) {
    const auto given = argument<std::vector<Glib::ustring>>(parameters, index);
    return {given.begin(), given.end()};
}

template <typename T>
Glib::VariantContainerBase answerOf(const T& value) {
    return Glib::VariantContainerBase::create_tuple(Glib::Variant<T>::create(value));
}

Glib::VariantBase text(const std::string& value) {
    return Glib::Variant<Glib::ustring>::create(value);
}

}  // namespace

SearchProvider::SearchProvider(const Glib::RefPtr<Gio::DBus::Connection>& bus, Actions actions)
    : m_bus(bus)
    , m_actions(std::move(actions))
    , m_table([this](const auto&,
                     const auto&,
                     const auto&,
                     const auto&,
                     const Glib::ustring& method,
                     const Glib::VariantContainerBase& parameters,
                     const Invocation& invocation) { called(method, parameters, invocation); }) {
    const auto node = Gio::DBus::NodeInfo::create_for_xml(kInterface);
    m_registration = bus->register_object(kPath, node->lookup_interface(), m_table);
}

SearchProvider::~SearchProvider() {
    m_bus->unregister_object(m_registration);
}

// The types of the arguments have been checked against the description by the bus library.
void SearchProvider::called(const Glib::ustring& method,
                            const Glib::VariantContainerBase& parameters,
                            const Invocation& invocation) {
    if (method == "GetInitialResultSet") return find(strings(parameters, 0), invocation);
    // What was found before may have been cut off: the longer question is asked of all notes.
    if (method == "GetSubsearchResultSet") return find(strings(parameters, 1), invocation);
    if (method == "GetResultMetas") return describe(strings(parameters, 0), invocation);
    if (method == "ActivateResult") {
        activate(argument<Glib::ustring>(parameters, 0), strings(parameters, 1),
                 argument<guint32>(parameters, 2));
    } else {
        m_actions.searchInside(strings(parameters, 0), argument<guint32>(parameters, 1));
    }
    invocation->return_value({});
}

void SearchProvider::find(const Strings& terms, const Invocation& invocation) {
    m_actions.hold();
    m_actions.search().find(terms, [this, invocation](const Strings& ids) {
        invocation->return_value(answerOf(std::vector<Glib::ustring>(ids.begin(), ids.end())));
        m_actions.release();
    });
}

void SearchProvider::describe(const Strings& ids, const Invocation& invocation) const {
    std::vector<std::map<Glib::ustring, Glib::VariantBase>> metas;
    for (const auto& hit : m_actions.search().describe(ids)) {
        auto& meta = metas.emplace_back();
        meta.emplace("id", text(hit.id));
        meta.emplace("name", text(hit.title));
        if (!hit.excerpt.empty()) meta.emplace("description", text(hit.excerpt));
        meta.emplace("gicon", text(kIcon));
    }
    m_actions.hold();  // and thereby the wait for the next question begins anew
    invocation->return_value(answerOf(metas));
    m_actions.release();
}

void SearchProvider::activate(const std::string& id,
                              const Strings& terms,
                              std::uint32_t time) const {
    const auto note = Uuid::parse(id);
    // A note that has gone meanwhile: the search itself shows what there is now.
    if (!note || m_actions.search().describe({id}).empty()) {
        return m_actions.searchInside(terms, time);
    }
    m_actions.show(*note, terms, time);
}

}  // namespace corvel
