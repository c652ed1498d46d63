#include "ui/FirstFrame.h"

#include <gtkmm/application.h>
#include <gtkmm/window.h>

/// What the program's start is measured beside: a window with nothing in it.
int main() {
    const auto application = Gtk::Application::create("com.qno.corvel.empty");
    application->signal_activate().connect([&application] {
        auto* window = new Gtk::Window();
        window->set_default_size(1320, 860);
        corvel::reportFirstFrame(*window);
        application->add_window(*window);
        window->present();
    });
    return application->run();
}
