#pragma once

#include "app/DesktopSearch.h"
#include "platform/Uuid.h"

#include <giomm/dbusconnection.h>
#include <giomm/dbusinterfacevtable.h>
#include <giomm/dbusmethodinvocation.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// The object on the session bus through which the desktop's shell searches notes
/// (org.gnome.Shell.SearchProvider2).
class SearchProvider {
public:
    static constexpr const char* kPath = "/com/qno/corvel/SearchProvider";

    struct Actions {
        std::function<DesktopSearch&()> search;  ///< the store is opened by the first question
        std::function<void()> hold;              ///< while a question waits for its answer
        std::function<void()> release;
        std::function<void(const Uuid&, const std::vector<std::string>& terms, std::uint32_t time)>
            show;
        std::function<void(const std::vector<std::string>& terms, std::uint32_t time)> searchInside;
    };

    /// Throws Glib::Error when the path is taken.
    SearchProvider(const Glib::RefPtr<Gio::DBus::Connection>& bus, Actions actions);
    SearchProvider(const SearchProvider&) = delete;
    SearchProvider& operator=(const SearchProvider&) = delete;
    ~SearchProvider();

private:
    using Invocation = Glib::RefPtr<Gio::DBus::MethodInvocation>;

    void called(const Glib::ustring& method,
                const Glib::VariantContainerBase& parameters,
                const Invocation& invocation);
    void find(const std::vector<std::string>& terms, const Invocation& invocation);
    void describe(const std::vector<std::string>& ids, const Invocation& invocation) const;
    void activate(const std::string& id,
                  const std::vector<std::string>& terms,
                  std::uint32_t time) const;

    Glib::RefPtr<Gio::DBus::Connection> m_bus;
    Actions m_actions;
    Gio::DBus::InterfaceVTable m_table;
    guint m_registration = 0;
};

}  // namespace corvel
