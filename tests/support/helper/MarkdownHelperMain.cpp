#include "markdown/MarkdownHelper.h"

int main() {
    return corvel::runMarkdownHelper();
}
