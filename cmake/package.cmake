# What is delivered, each file named once, by component. `cmake --install` puts a component together, and fails when one of
# its files is missing; the target package_files builds them all. tools/make-package makes the packages of it.
set(orvc_console_files
  ORVSConfig.exe
  ORVSConfig0007.dll
  ORVSConfig000c.dll
  HelpFile.chm
  HelpFile0007.chm
  HelpFile000c.chm)
set(orvc_demo_files
  KSPassThru.dll
  DemoServer.txt)

# Windows' older editors know only its own line ends.
configure_file(${PROJECT_SOURCE_DIR}/demo_server/README.md ${ORVC_BIN_DIR}/DemoServer.txt @ONLY NEWLINE_STYLE CRLF)

list(TRANSFORM orvc_console_files PREPEND ${ORVC_BIN_DIR}/)
list(TRANSFORM orvc_demo_files PREPEND ${ORVC_BIN_DIR}/)
install(FILES ${orvc_console_files} DESTINATION . COMPONENT console)
install(FILES ${orvc_demo_files} DESTINATION . COMPONENT demo)
add_custom_target(package_files DEPENDS ${orvc_console_files} ${orvc_demo_files})
