# cpack -G DEB (from the build folder) makes tremidia_<version>_amd64.deb.
set(CPACK_PACKAGE_NAME tremidia)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Τρεμίδια")
set(CPACK_PACKAGE_CONTACT "Τρεμίδια <tremidia@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Greek learning program on historical sources for school pupils")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "Τρεμίδια presents a course of themes, scenarios and activities over historical\n"
    "sources (texts, photographs, maps) to school pupils, in Greek, with hot words in\n"
    "the texts, a search over all sources, a glossary, a navigation tree, a rich-text\n"
    "notepad and a small bitmap painter. The package carries a sample course; the\n"
    "system settings file points every user of the computer at the content database.")
# The package installs where the build is configured to; only below /usr does the
# program find the system settings file in /etc/xdg without help.
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    message(STATUS "Debian package for ${CMAKE_INSTALL_PREFIX}: configure with -DCMAKE_INSTALL_PREFIX=/usr for the computers' package")
endif()
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the shared libraries do not tell: the windowing and image plugins Qt loads at
# run time, the media plugins the player plays through, the fonts of the Greek text,
# and xdg-utils for the mail program. What a library only Recommends and the program
# needs is named here too, since technicians install with --no-install-recommends:
# the URW fonts libwmf draws metafile text with, Qt's Greek translations. LibreOffice
# Writer opens the assignment documents and exported notes; the program runs without it.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qt6-qpa-plugins, qt6-image-formats-plugins, libqt6svg6, gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, fonts-dejavu-core, fonts-liberation2, xdg-utils")
string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", fonts-urw-base35, qt6-translations-l10n")
# The media formats of the era's content: MPEG-1, WMV/ASF and old AVI codecs, and MIDI
# with a General MIDI sound font.
string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS
    ", gstreamer1.0-plugins-ugly, gstreamer1.0-plugins-bad, gstreamer1.0-libav, timgm6mb-soundfont")
# The notepad's spell checking reads Hunspell's Greek dictionary, which no library names.
string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", hunspell-el")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libreoffice-writer, libreoffice-l10n-el")
# Reading aloud speaks through speech-dispatcher with espeak-ng's Greek voice; without
# them the program says once that it cannot, and runs on.
string(APPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS
    ", speech-dispatcher, speech-dispatcher-espeak-ng, espeak-ng")
# The system settings file is the technician's: an upgrade keeps the database chosen.
set(conffiles ${CMAKE_CURRENT_BINARY_DIR}/conffiles)
file(WRITE ${conffiles} "${TREMIDIA_SYSTEM_SETTINGS_DIR}/tremidia.conf\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${conffiles})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

include(CPack)
