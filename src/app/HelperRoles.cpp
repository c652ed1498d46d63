#include "app/HelperRoles.h"

#include "export/pdf/PdfTask.h"
#include "markdown/MarkdownHelper.h"
#include "model/BackupCheck.h"

#include <string_view>

namespace corvel {

std::optional<int> runAsHelper(int argc, char** argv) {
    if (argc == 2 && std::string_view(argv[1]) == kMarkdownHelperOption) return runMarkdownHelper();
    if (argc == 3 && std::string_view(argv[1]) == kBackupCheckOption) {
        return runBackupCheck(argv[2]);
    }
    if (argc == 3 && std::string_view(argv[1]) == kPdfFinisherOption) {
        return runPdfFinisher(argv[2]);
    }
    return std::nullopt;
}

}  // namespace corvel
