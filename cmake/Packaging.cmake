# SPDX-License-Identifier: GPL-3.0-or-later
# The files installed beside the programs, and the Debian package made of them (cpack -G DEB).

file(GLOB man_pages ${PROJECT_SOURCE_DIR}/packaging/*.1)
if(NOT RELAY_GUI)
  list(FILTER man_pages EXCLUDE REGEX "/korvel-relay\\.1$")
endif()
install(FILES ${man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
if(RELAY_GUI)
  install(FILES packaging/korvel-relay.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES packaging/korvel-relay.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  install(FILES packaging/example.korvel.relay.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korvel-relay)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Brenmoor Pty Ltd")
set(CPACK_PACKAGE_CONTACT "Korvel Relay <support@korvel.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "workbench with which a webmaster promotes web sites")
set(CPACK_PACKAGE_DESCRIPTION
  "Korvel Relay keeps web projects and submits the pages of their websites to search engines and directories that a text catalogue describes. With a window and a command line.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ca-certificates, xdg-utils")
include(CPack)
