# What all targets share: warnings, sanitizers, hardening, and where programs are put.

add_library(orvc_options INTERFACE)
target_compile_options(orvc_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                              -Wnon-virtual-dtor -Wold-style-cast)
if(ORVC_WERROR)
  target_compile_options(orvc_options INTERFACE -Werror)
endif()
if(ORVC_SANITIZE)
  target_compile_options(orvc_options INTERFACE -fsanitize=${ORVC_SANITIZE} -fno-omit-frame-pointer
                                                -fno-sanitize-recover=all)
  target_link_options(orvc_options INTERFACE -fsanitize=${ORVC_SANITIZE})
endif()
if(ORVC_FUZZ)
  target_compile_options(orvc_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(WIN32)
  # Windows 7 is the oldest system the console runs on. The runtime is linked in: one file to install.
  target_compile_definitions(orvc_options INTERFACE _WIN32_WINNT=0x0601 WINVER=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX STRICT)
  # -Wcast-function-type: GetProcAddress returns one function type for all; -Wold-style-cast: Windows' own macros.
  target_compile_options(orvc_options INTERFACE -Wno-cast-function-type -Wno-old-style-cast -fstack-protector-strong)
  target_link_options(orvc_options INTERFACE -static -fstack-protector-strong -Wl,--nxcompat -Wl,--dynamicbase
                                           -Wl,--gc-sections)
  # The same sources give the same bytes, whenever and in whatever folder they are built.
  target_compile_options(orvc_options INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")
  target_link_options(orvc_options INTERFACE -Wl,--no-insert-timestamp)
  target_compile_options(orvc_options INTERFACE -ffunction-sections -fdata-sections)
  # Programs and the demo server's library lie together, as they are installed.
  set(ORVC_BIN_DIR ${CMAKE_BINARY_DIR}/bin)
endif()

find_package(Threads REQUIRED)

# orvc_add_library(<name> SOURCES <files> [DEPENDS <targets>]): a static library of one folder. Its headers are included
# by their path below src/.
function(orvc_add_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${arg_DEPENDS} PRIVATE orvc_options)
endfunction()
