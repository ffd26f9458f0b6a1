# The Debian packages that `cpack` makes: zelvo-avi-repair (the window) and zelvo-avi (the command line). What they
# depend on is found out from the programs themselves. Meant for the preset `package`, whose folders are a system's.

set(ZELVO_PACKAGE_CONTACT "The Zelvo AVI Repair developers <zelvo-avi-repair@example.invalid>" CACHE STRING
    "Who answers for the packages: a name and an address")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zelvo-avi-repair)
set(CPACK_PACKAGE_VENDOR "Zelvo AVI Repair")
set(CPACK_PACKAGE_CONTACT "${ZELVO_PACKAGE_CONTACT}")
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own, below
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${zelvo_components})
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME zelvo-avi-repair)
set(CPACK_DEBIAN_WINDOW_DESCRIPTION "repairs damaged AVI films
A camera lost power, a download broke off, a card has bad spots, and now no
player opens the film. Zelvo AVI Repair walks through the whole file, collects
every piece of picture and sound that is still there, and writes a new film
with valid headers and a new index. The damaged file is only ever read.

This package holds the window: choose a film, wait, look at the result, save.")
# Opening the help needs a way to a browser, and Wayland desktops a module of their own.
set(CPACK_DEBIAN_WINDOW_PACKAGE_RECOMMENDS "qt6-translations-l10n, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_WINDOW_PACKAGE_SUGGESTS "mpv | vlc, zelvo-avi")

set(CPACK_DEBIAN_WINDOW_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/postrm)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME zelvo-avi)
set(CPACK_DEBIAN_CLI_DESCRIPTION "repairs damaged AVI films from the command line
Walks through damaged AVI files, collects every piece of picture and sound that
is still there, and writes new files with valid headers and new indexes. The
damaged files are only ever read.

This package holds the command zelvo-avi, for many films at once, for scripts
and for machines without a screen.")
# Loaded when checksums are wanted, so nothing in the program itself tells of it.
set(CPACK_DEBIAN_CLI_PACKAGE_DEPENDS "libssl3")
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS "zelvo-avi-repair")

include(CPack)
