# Third-party libraries: natively the system's packages, for Windows what tools/cross-libraries has built from the sources of
# the same packages. Configuring builds nothing; ./test, ./run, ./bench and ./package run tools/cross-libraries first.
if(CMAKE_CROSSCOMPILING)
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/cross-libraries --print
                  OUTPUT_VARIABLE prefixes OUTPUT_STRIP_TRAILING_WHITESPACE
                  ERROR_VARIABLE reason ERROR_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE code)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "${reason}")
  endif()
  string(REPLACE "\n" ";" prefixes "${prefixes}")
  list(APPEND CMAKE_FIND_ROOT_PATH ${prefixes})
  # Not those of an earlier build, whose folders may still be there.
  unset(CURL_DIR CACHE)
  unset(pugixml_DIR CACHE)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/cross-libraries)
  # Never a package of the machine that builds.
  set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
endif()

find_package(pugixml 1.13 REQUIRED CONFIG)
find_package(CURL 7.88 REQUIRED)
