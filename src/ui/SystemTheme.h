#pragma once

#include "platform/ScopedConnection.h"
#include "themes/Theme.h"

#include <sigc++/signal.h>

namespace corvel {

/// The built-in light or dark theme, as the desktop's appearance asks for, followed while running.
/// Needs libadwaita to be initialised.
class SystemTheme {
public:
    SystemTheme();
    SystemTheme(const SystemTheme&) = delete;
    SystemTheme& operator=(const SystemTheme&) = delete;
    ~SystemTheme();

    const Theme& theme() const;
    sigc::signal<void()>& signalChanged() { return m_changed; }

private:
    unsigned long m_handler;
    sigc::signal<void()> m_changed;
};

}  // namespace corvel
