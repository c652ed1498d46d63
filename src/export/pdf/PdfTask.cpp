#include "export/pdf/PdfTask.h"

#include "export/ExportError.h"
#include "export/pdf/RunningLines.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>

namespace corvel {

namespace {

using Json = nlohmann::json;

Json jsonOf(const std::optional<Color>& color) {
    return color ? Json{color->red, color->green, color->blue} : Json();
}

std::optional<Color> colorFrom(const Json& json) {
    if (json.is_null()) return std::nullopt;
    return Color{json.at(0).get<double>(), json.at(1).get<double>(), json.at(2).get<double>()};
}

std::string standardInput() {
    std::string text;
    std::array<char, 65536> part{};
    for (std::size_t count = 0; (count = std::fread(part.data(), 1, part.size(), stdin)) > 0;)
        text.append(part.data(), count);
    return text;
}

std::string finished(const char* printed, const PdfTask& task) {
    PdfFinisher finisher(printed);
    finisher.useMarks(task.colors, marksFrom(task.marks));
    finisher.addRunningLines(runningLines(finisher.pageCount(), task.paper, task.header),
                             task.description.paper);
    finisher.describe(task.description);
    return finisher.bytes();
}

}  // namespace

// One line, and the marks behind it: they are as long as the note has links and headings.
std::string textOf(const PdfTask& task) {
    const Json order{{"red", task.colors.red},
                     {"sheet", {task.paper.width, task.paper.height, task.paper.margin}},
                     {"header", task.header},
                     {"title", task.description.title},
                     {"language", task.description.language},
                     {"paper", jsonOf(task.description.paper)}};
    return order.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n" + task.marks;
}

PdfTask pdfTaskFrom(const std::string& text) {
    try {
        const auto end = std::min(text.find('\n'), text.size());
        const auto order =
            Json::parse(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end));
        const auto& sheet = order.at("sheet");
        return {{order.at("red").get<int>()},
                text.substr(end),
                {sheet.at(0).get<double>(), sheet.at(1).get<double>(), sheet.at(2).get<double>()},
                order.at("header").get<std::string>(),
                {order.at("title").get<std::string>(), order.at("language").get<std::string>(),
                 colorFrom(order.at("paper"))}};
    } catch (const Json::exception& error) {
        throw ExportError(ExportError::Kind::platformFailed, error.what());
    }
}

int runPdfFinisher(const char* printed) {
    try {
        const std::string bytes = finished(printed, pdfTaskFrom(standardInput()));
        const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
        return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fputs(error.what(), stdout);
        return EXIT_FAILURE;
    }
}

}  // namespace corvel
