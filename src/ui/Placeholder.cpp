#include <gtkmm/application.h>
