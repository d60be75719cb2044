# orvc_make_icon(<variable>): the program's icon, drawn in the build. The variable names the .ico afterwards; list it among
# a target's sources, or in a resource script's OBJECT_DEPENDS, to have it made first.
function(orvc_make_icon variable)
  set(icon ${CMAKE_CURRENT_BINARY_DIR}/orvsconfig.ico)
  add_custom_command(
    OUTPUT ${icon}
    COMMAND ${PROJECT_SOURCE_DIR}/tools/make-icon ${icon}
    DEPENDS ${PROJECT_SOURCE_DIR}/tools/make-icon
            ${PROJECT_SOURCE_DIR}/resources/icon.svg
            ${PROJECT_SOURCE_DIR}/resources/icon_small.svg
    COMMENT "Drawing the icon"
    VERBATIM)
  set(${variable} ${icon} PARENT_SCOPE)
endfunction()
