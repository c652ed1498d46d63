# The .deb: `./dev package`. What the program needs at run time is read from the program itself.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qno-corvel)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION}${CORVEL_VERSION_SUFFIX})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "write and keep notes in Markdown")
set(CPACK_PACKAGE_DESCRIPTION
"A library of notes in folders and tags on the left, the editor and its preview
beside it. Search finds any words in any note while you type; themes colour the
page; notes are exported to HTML, PDF, EPUB and plain text.
.
The interface is in Polish and English.")
# Who builds a package for others signs with an address of their own, as with Debian's tools.
if(DEFINED ENV{DEBEMAIL})
  set(CPACK_PACKAGE_CONTACT "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
else()
  set(CPACK_PACKAGE_CONTACT "qno Corvel maintainers <maintainers@qno-corvel.invalid>")
endif()
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION editors)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Icons are drawn by librsvg's loader, GTK speaks to screen readers through at-spi2-core; libraries that are
# loaded late are added by PackageDepends.cmake.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "librsvg2-common, at-spi2-core, default-dbus-session-bus | dbus-session-bus")
# Spelling in both languages, and some keeper of the assistant's keys.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "hunspell-en-us, hunspell-pl, gnome-keyring | keepassxc | libkf5wallet-bin, xdg-desktop-portal")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "packagekit, hunspell-dictionary")
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/PackageDepends.cmake)
set(CPACK_CORVEL_WEB_CALLS ${CMAKE_BINARY_DIR}/src/corvel_ui-late-calls.inc)
set(CPACK_CORVEL_LATE_LIBRARIES ${LIBZIP_LIBRARY} ${QPDF_LIBRARY} ${SOUP_LIBRARY} ${SECRET_LIBRARY}
    ${ENCHANT_LIBRARY})
include(CPack)
