# Every library the program stands on; all are packages of the distribution.
find_package(PkgConfig REQUIRED)
find_package(SQLiteCpp REQUIRED)
find_package(nlohmann_json REQUIRED)

pkg_check_modules(GLIBMM REQUIRED IMPORTED_TARGET glibmm-2.68 giomm-2.68 gio-unix-2.0)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-uc icu-i18n)

find_path(CMARK_GFM_INCLUDE cmark-gfm.h REQUIRED)
find_library(CMARK_GFM_LIBRARY cmark-gfm REQUIRED)
find_library(CMARK_GFM_EXTENSIONS_LIBRARY cmark-gfm-extensions REQUIRED)
add_library(cmark_gfm INTERFACE)
target_include_directories(cmark_gfm SYSTEM INTERFACE ${CMARK_GFM_INCLUDE})
target_link_libraries(cmark_gfm INTERFACE ${CMARK_GFM_EXTENSIONS_LIBRARY} ${CMARK_GFM_LIBRARY})

if(CORVEL_UI)
  pkg_check_modules(GTKMM REQUIRED IMPORTED_TARGET gtkmm-4.0)
  pkg_check_modules(ADWAITA REQUIRED IMPORTED_TARGET libadwaita-1)
  pkg_check_modules(SOURCEVIEW REQUIRED IMPORTED_TARGET gtksourceview-5)
  pkg_check_modules(WEBKIT REQUIRED IMPORTED_TARGET webkitgtk-6.0)
  pkg_check_modules(SOUP REQUIRED IMPORTED_TARGET libsoup-3.0)
endif()
