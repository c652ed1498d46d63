#include "ui/Application.h"

int main(int argc, char** argv) {
    return corvel::Application::create()->run(argc, argv);
}
