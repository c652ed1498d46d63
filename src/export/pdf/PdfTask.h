#pragma once

#include "export/pdf/PageMarks.h"
#include "export/pdf/PdfFinisher.h"
#include "platform/PrintView.h"

#include <string>
#include <vector>

namespace corvel {

inline constexpr const char* kPdfFinisherOption = "--finish-pdf";

/// What a printed file is to be finished with; see PdfFinisher.
struct PdfTask {
    MarkColors colors;
    std::string marks;  ///< as the page's function returned them
    PaperSize paper;
    std::string header;  ///< at the top of every page
    PdfDescription description;
    std::vector<std::string> photos;  ///< that the page embeds, as base64
};

/// The task as the helper process reads it.
std::string textOf(const PdfTask& task);
/// Throws ExportError for anything else.
PdfTask pdfTaskFrom(const std::string& text);

/// The program as a helper process: reads a task from standard input and writes `printed`,
/// finished by it, to standard output. Returns the exit status; when that is not 0, what went wrong
/// is what standard output tells.
int runPdfFinisher(const char* printed);

}  // namespace corvel
