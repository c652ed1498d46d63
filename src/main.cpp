#include "markdown/MarkdownHelper.h"
#include "ui/Application.h"

#include <string_view>

int main(int argc, char** argv) {
    // The program is its own helper for texts that its parser is slow at; see GuardedRenderer.
    if (argc == 2 && std::string_view(argv[1]) == corvel::kMarkdownHelperOption) {
        return corvel::runMarkdownHelper();
    }
    return corvel::Application::create()->run(argc, argv);
}
