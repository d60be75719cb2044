# What is delivered, each file named once, by component. `cmake --install` puts a component together, and fails when one of
# its files is missing; the target package_files builds them all. tools/make-package makes the packages of it.
set(orvc_console_files
  THIRD_PARTY_NOTICES.txt
  ORVSConfig.exe
  ORVSConfig0007.dll
  ORVSConfig000c.dll
  HelpFile.chm
  HelpFile0007.chm
  HelpFile000c.chm)
set(orvc_demo_files
  KSPassThru.dll
  DemoServer.txt)

# Programs and libraries with code. The linker's maps tell tools/third-party what of others is in them.
set(orvc_linked_targets ORVSConfig orvc_demo_server)
set(maps)
foreach(target ${orvc_linked_targets})
  set(map ${CMAKE_BINARY_DIR}/maps/$<TARGET_FILE_NAME:${target}>.map)
  target_link_options(${target} PRIVATE "LINKER:-Map=${map}")
  list(APPEND maps ${map})
endforeach()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/maps)
add_custom_command(
  OUTPUT ${ORVC_BIN_DIR}/THIRD_PARTY_NOTICES.txt
  COMMAND ${PROJECT_SOURCE_DIR}/tools/third-party notices ${ORVC_BIN_DIR}/THIRD_PARTY_NOTICES.txt ${maps}
  DEPENDS ${PROJECT_SOURCE_DIR}/tools/third-party ${orvc_linked_targets}
  COMMENT "Collecting the third-party notices"
  VERBATIM)

# Windows' older editors know only its own line ends.
configure_file(${PROJECT_SOURCE_DIR}/demo_server/README.md ${ORVC_BIN_DIR}/DemoServer.txt @ONLY NEWLINE_STYLE CRLF)

list(TRANSFORM orvc_console_files PREPEND ${ORVC_BIN_DIR}/)
list(TRANSFORM orvc_demo_files PREPEND ${ORVC_BIN_DIR}/)
install(FILES ${orvc_console_files} DESTINATION . COMPONENT console)
install(FILES ${orvc_demo_files} DESTINATION . COMPONENT demo)
# Built with everything else: a test installs the packages of the build.
add_custom_target(package_files ALL DEPENDS ${orvc_console_files} ${orvc_demo_files})
