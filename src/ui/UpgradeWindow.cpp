#include "ui/UpgradeWindow.h"

#include "app/Texts.h"
#include "app/texts/StoreTexts.h"
#include "platform/Log.h"
#include "platform/StoreError.h"
#include "ui/Accessible.h"

#include <glibmm/main.h>
#include <gtkmm/box.h>
#include <gtkmm/headerbar.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace corvel {

namespace {

constexpr int kWidth = 440;
constexpr int kMargin = 24;
constexpr int kGap = 12;
constexpr std::chrono::milliseconds kSlice{12};

}  // namespace

UpgradeWindow::UpgradeWindow(derivedRows::Rebuild& work,
                             const Localisation& texts,
                             std::function<void()> done)
    : m_work(work), m_texts(texts), m_done(std::move(done)) {
    set_title(texts(texts::programName));
    set_titlebar(*Gtk::make_managed<Gtk::HeaderBar>());
    set_resizable(false);
    set_default_size(kWidth, -1);
    auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, kGap);
    box->set_margin(kMargin);
    m_heading.set_text(texts(texts::upgrading));
    m_heading.add_css_class("heading");
    for (auto* label : {&m_heading, &m_label}) {
        label->set_xalign(0);
        label->set_wrap(true);
        box->append(*label);
    }
    m_label.add_css_class("numeric");
    box->append(m_bar);
    set_child(*box);
    setAccessibleLabel(m_bar, texts(texts::upgrading));
    showProgress();
    m_idle = Glib::signal_idle().connect([this] { return slice(); });
}

bool UpgradeWindow::slice() {
    try {
        if (m_work.step(kSlice)) {
            showProgress();
            return true;
        }
    } catch (const StoreError& error) {
        fatalStop(std::string("Core Data store failed to load: ") + error.what());
    }
    const auto done = m_done;  // outlives this window, which it may destroy
    done();
    return false;
}

void UpgradeWindow::showProgress() {
    m_label.set_text(m_texts.format(
        texts::upgraded, {std::to_string(m_work.doneCount()), std::to_string(m_work.noteCount())}));
    m_bar.set_fraction(static_cast<double>(m_work.doneCount()) /
                       static_cast<double>(std::max<std::size_t>(1, m_work.noteCount())));
}

}  // namespace corvel
