#include "platform/gtk/SystemAppearance.h"

#include <adwaita.h>

namespace corvel {

bool isSystemDark() {
    return adw_style_manager_get_dark(adw_style_manager_get_default()) != FALSE;
}

}  // namespace corvel
