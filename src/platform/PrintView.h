#pragma once

#include "platform/WebView.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace corvel {

/// A sheet of paper and the margin on its four sides, in points (1/72 inch).
struct PaperSize {
    double width = 0;
    double height = 0;
    double margin = 0;
};

/// An off-screen web view that prints its page; it lives for one printing. Every answer comes on
/// the main loop, none before the call that causes it returns, and none after the view is gone.
class PrintView {
public:
    /// Called once with what the script returned as JSON, or with an error's description.
    using Called = std::function<void(const std::string& json, const std::optional<std::string>&)>;
    /// Called once, with an error's description or with none.
    using Printed = std::function<void(const std::optional<std::string>& error)>;

    virtual ~PrintView() = default;

    virtual WebView& page() = 0;
    /// Runs the body of an async function in the page.
    virtual void call(const std::string& functionBody, Called done) = 0;
    /// Writes the loaded page as a PDF file.
    virtual void print(const std::filesystem::path& file, const PaperSize& paper, Printed done) = 0;
};

}  // namespace corvel
