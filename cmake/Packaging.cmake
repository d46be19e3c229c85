# SPDX-License-Identifier: GPL-3.0-or-later
# The files installed beside the programs, and the Debian package made of them (cpack -G DEB).

file(GLOB man_pages ${PROJECT_SOURCE_DIR}/packaging/*.1)
if(NOT RELAY_GUI)
  list(FILTER man_pages EXCLUDE REGEX "/korvel-relay\\.1$")
endif()
# Man pages are installed compressed, without a name or a time inside, so that every build gives the same bytes.
find_program(GZIP_PROGRAM gzip REQUIRED)
foreach(page IN LISTS man_pages)
  get_filename_component(name ${page} NAME)
  set(compressed ${PROJECT_BINARY_DIR}/man/${name}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/man
    COMMAND ${GZIP_PROGRAM} -9nc ${page} > ${compressed}
    DEPENDS ${page} VERBATIM)
  list(APPEND compressed_pages ${compressed})
endforeach()
add_custom_target(man_pages ALL DEPENDS ${compressed_pages})
install(FILES ${compressed_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# What shells complete is printed by the program itself, so it has every command and option.
foreach(shell IN ITEMS bash zsh fish)
  set(completion ${PROJECT_BINARY_DIR}/completions/korvel-relay-cli.${shell})
  add_custom_command(OUTPUT ${completion}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/completions
    COMMAND $<TARGET_FILE:korvel-relay-cli> completion ${shell} > ${completion}
    DEPENDS korvel-relay-cli VERBATIM)
  list(APPEND completions ${completion})
endforeach()
add_custom_target(completions ALL DEPENDS ${completions})
set(completions ${PROJECT_BINARY_DIR}/completions/korvel-relay-cli)
install(FILES ${completions}.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME korvel-relay-cli)
install(FILES ${completions}.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
# The second folder is that of Debian's packages.
foreach(folder IN ITEMS site-functions vendor-completions)
  install(FILES ${completions}.zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${folder} RENAME _korvel-relay-cli)
endforeach()

# The guides for users, with their pictures; docs/architecture.md is for people who have the sources.
# They are the program's help too, so they are not below share/doc, which a system may leave out.
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/korvel-relay/guide
  PATTERN architecture.* EXCLUDE)
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/korvel-relay)
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
