# Installation and the Debian package: the programs, a desktop entry with its icon, the README.
include(GNUInstallDirs)

install(TARGETS velora velora-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# The command-line tool joins the package once its target exists.
if(TARGET velora-cli)
    install(TARGETS velora-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(FILES ${PROJECT_SOURCE_DIR}/packaging/velora.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/velora.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/velora)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velora)
set(CPACK_PACKAGE_VENDOR "Halvern Electronics")
set(CPACK_PACKAGE_CONTACT "Velora maintainers <velora@halvern.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_INSTALL_DIRECTORY /usr)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://halvern.example/velora")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Set up, command and watch Orvix servo drives over one serial line\n Reads and writes a drive's parameters and tables, sends operating commands,\n watches the drive live and captures triggered waves. English and Japanese.\n Includes velora-sim, a simulated drive on a pseudo-terminal.")
# What is loaded at run time (the platform plugins, the Japanese font, Qt's own translations)
# is named here; the libraries the programs link are found by dpkg-shlibdeps where it exists.
set(VELORA_RUNTIME_DEPENDS "qt6-qpa-plugins, fonts-noto-cjk, qt6-translations-l10n")
find_program(VELORA_DPKG_SHLIBDEPS dpkg-shlibdeps)
if(VELORA_DPKG_SHLIBDEPS)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "${VELORA_RUNTIME_DEPENDS}")
else()
    set(CPACK_DEBIAN_PACKAGE_DEPENDS
        "libqt6core6 (>= 6.4), libqt6gui6 (>= 6.4), libqt6widgets6 (>= 6.4), libqt6serialport6 (>= 6.4), ${VELORA_RUNTIME_DEPENDS}")
endif()
include(CPack)
