#include "export/pdf/PdfTask.h"

#include "export/ExportError.h"
#include "export/pdf/RunningLines.h"
#include "platform/FileBytes.h"

#include <nlohmann/json.hpp>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

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

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

std::string finished(const char* printed, const PdfTask& task) {
    PdfFinisher finisher(printed);
    finisher.useMarks(task.colors, marksFrom(task.marks));
    finisher.addRunningLines(runningLines(finisher.pageCount(), task.paper, task.header),
                             task.description.paper);
    finisher.describe(task.description);
    finisher.usePhotos(task.photos);
    return finisher.bytes();
}

}  // namespace

// By lines: the order, the marks, the photos.
std::string textOf(const PdfTask& task) {
    const Json order{{"red", task.colors.red},
                     {"sheet", {task.paper.width, task.paper.height, task.paper.margin}},
                     {"header", task.header},
                     {"title", task.description.title},
                     {"language", task.description.language},
                     {"paper", jsonOf(task.description.paper)}};
    std::string text = order.dump(-1, ' ', false, Json::error_handler_t::replace);
    text.append("\n").append(task.marks);
    for (const auto& photo : task.photos)
        text.append("\n").append(photo);
    return text;
}

PdfTask pdfTaskFrom(const std::string& text) {
    try {
        auto lines = linesOf(text);
        lines.resize(std::max<std::size_t>(lines.size(), 2));
        const auto order = Json::parse(lines[0]);
        const auto& sheet = order.at("sheet");
        return {{order.at("red").get<int>()},
                std::move(lines[1]),
                {sheet.at(0).get<double>(), sheet.at(1).get<double>(), sheet.at(2).get<double>()},
                order.at("header").get<std::string>(),
                {order.at("title").get<std::string>(), order.at("language").get<std::string>(),
                 colorFrom(order.at("paper"))},
                {std::move_iterator(lines.begin() + 2), std::move_iterator(lines.end())}};
    } catch (const Json::exception& error) {
        throw ExportError(ExportError::Kind::platformFailed, error.what());
    }
}

int runPdfFinisher(const char* printed) {
    try {
        runningLines(1, {1, 1, 0}, "1");  // finds the fonts while the file is still printed
        const auto task = pdfTaskFrom(readToEnd(STDIN_FILENO).value_or(""));
        return writeAll(STDOUT_FILENO, finished(printed, task)) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        writeAll(STDOUT_FILENO, error.what());
        return EXIT_FAILURE;
    }
}

}  // namespace corvel
