# What `cmake --install` puts where, and the package for Debian that cpack makes of it.

install(TARGETS standby RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS standby_platform standby_service phone_standby LIBRARY DESTINATION ${STANDBY_LIBRARY_FOLDER})
install(DIRECTORY traces DESTINATION ${CMAKE_INSTALL_DATADIR}/standby FILES_MATCHING PATTERN *.jsonl PATTERN README.md)
install(DIRECTORY packaging/cluster DESTINATION ${CMAKE_INSTALL_DATADIR}/standby USE_SOURCE_PERMISSIONS)

# Man pages and completion. A sanitized program is not installed.
if(NOT STANDBY_SANITIZE)
  set(manual ${CMAKE_CURRENT_BINARY_DIR}/manual)
  add_custom_command(OUTPUT ${manual}.stamp
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${manual}
    COMMAND standby --write-manual ${manual}
    COMMAND ${CMAKE_COMMAND} -E touch ${manual}.stamp
    DEPENDS standby VERBATIM COMMENT "Writing the manual")
  add_custom_target(manual ALL DEPENDS ${manual}.stamp)
  install(DIRECTORY ${manual}/man/ DESTINATION ${CMAKE_INSTALL_MANDIR})
  install(DIRECTORY ${manual}/bash-completion ${manual}/zsh DESTINATION ${CMAKE_INSTALL_DATAROOTDIR})
endif()

set(docs ${CMAKE_INSTALL_DATAROOTDIR}/doc/standby)
install(FILES README.md CHANGELOG.md DESTINATION ${docs})
install(DIRECTORY docs DESTINATION ${docs} FILES_MATCHING PATTERN *.md PATTERN *.png)

# The program holds code of others, and of D3 all modules: their terms lie with it.
set(copyright ${CMAKE_CURRENT_BINARY_DIR}/copyright)
file(READ packaging/copyright text)
file(GLOB bundled /usr/share/doc/nlohmann-json3-dev/copyright /usr/share/doc/libcli11-dev/copyright
  /usr/share/doc/node-d3/copyright /usr/share/doc/node-d3-*/copyright)
foreach(name IN ITEMS nlohmann-json3-dev libcli11-dev node-d3 node-d3-scale)
  if(NOT /usr/share/doc/${name}/copyright IN_LIST bundled)
    message(FATAL_ERROR "/usr/share/doc/${name}/copyright is missing: the terms of what is bundled")
  endif()
endforeach()
foreach(file IN LISTS bundled)
  get_filename_component(name ${file} DIRECTORY)
  get_filename_component(name ${name} NAME)
  file(READ ${file} terms)
  string(APPEND text "\n\n==== ${name} ====\n\n${terms}")
endforeach()
file(WRITE ${copyright} "${text}")
install(FILES ${copyright} DESTINATION ${docs})

# The package for Debian
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME standby)
set(CPACK_PACKAGE_CONTACT "The maintainers of Phone standby <maintainers@phone-standby.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "replays recorded nights of a phone and tells what its standby policy did")
set(CPACK_PACKAGE_DESCRIPTION
"Plays recorded nights of a phone through the standby service and its plugin,
in virtual time: the sleep of the user, radios, firewall, freezing, timers and
cleaning, and why each of them came about. As a timeline, as a page for the
browser, as a full record for programs; a night can be held against another
build of the plugin or another configuration, and a simulated phone be moved
by hand.")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/packaging/debian.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_DEPENDS tzdata)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
include(CPack)
