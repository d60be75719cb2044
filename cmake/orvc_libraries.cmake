# Libraries that are not ours: natively the system's packages, for Windows what tools/cross-libraries builds from the
# sources of the same packages (at the first configuring, unless ./test or ./run did it before).
if(CMAKE_CROSSCOMPILING)
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/cross-libraries --print
                  OUTPUT_VARIABLE prefixes OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" prefixes "${prefixes}")
  list(APPEND CMAKE_FIND_ROOT_PATH ${prefixes})
  # Never a package of the machine that builds.
  set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
endif()

find_package(pugixml 1.13 REQUIRED CONFIG)
find_package(CURL 7.88 REQUIRED)
