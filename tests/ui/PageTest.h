#pragma once

#include "markdown/PreviewCoordinator.h"
#include "markdown/PreviewPage.h"
#include "platform/gtk/WebRoom.h"

#include <glibmm/main.h>
#include <gtest/gtest.h>
#include <gtkmm/init.h>
#include <gtkmm/window.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace corvel {

/// A window with a closed room in it, and questions to the page that only a test may ask.
class PageTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gtk_init();
        Gtk::init_gtkmm_internals();
    }

    PageTest() {
        window.set_default_size(400, 300);
        window.set_child(view->widget());
        window.present();
        coordinator->signalShown().connect([this] { shown = true; });
        coordinator->signalLinkOpened().connect([this](auto& url) { opened = url; });
    }
    ~PageTest() override { window.unset_child(); }

    void show(const std::string& body) {
        shown = false;
        coordinator->show("p { margin: 0; }", body);
        ASSERT_TRUE(waitFor([this] { return shown; }));
    }

    template <typename Condition>
    static bool waitFor(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        const auto tick = Glib::signal_timeout().connect([] { return true; }, 10);
        while (!condition() && std::chrono::steady_clock::now() < end) {
            Glib::MainContext::get_default()->iteration(true);
        }
        sigc::connection(tick).disconnect();
        return condition();
    }

    /// The value of an expression in the page, as text.
    std::string ask(const std::string& expression) {
        std::optional<std::string> answer;
        const auto answered = [](GObject* source, GAsyncResult* result, gpointer data) {
            const GObjectHandle<JSCValue> value(webkit_web_view_evaluate_javascript_finish(
                WEBKIT_WEB_VIEW(source), result, nullptr));
            const Handle<char, g_free> text(value ? jsc_value_to_string(value.get()) : nullptr);
            *static_cast<std::optional<std::string>*>(data) = text ? text.get() : "(error)";
        };
        webkit_web_view_evaluate_javascript(view->handle(), expression.c_str(), -1, nullptr,
                                            nullptr, nullptr, answered, &answer);
        waitFor([&] { return answer.has_value(); });
        return answer.value_or("(no answer)");
    }

    bool mayLoadImages = false;
    WebRoom room{[this] { return mayLoadImages; }};
    std::unique_ptr<WebKitView> view = room.makeView(PreviewPage::scriptHash());
    std::shared_ptr<PreviewCoordinator> coordinator =
        PreviewCoordinator::create(*view, std::chrono::seconds(30));
    Gtk::Window window;
    bool shown = false;
    std::string opened;
};

}  // namespace corvel
