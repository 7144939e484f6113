# What is built, and how. All options of the project are here.

set(ZUML_TOP_LEVEL OFF)
if(PROJECT_SOURCE_DIR STREQUAL CMAKE_SOURCE_DIR)
  set(ZUML_TOP_LEVEL ON)
endif()

option(ZUML_STATIC "Build a static library beside the shared one" OFF)
option(ZUML_HWCAPS "Build the library a second time, for x86-64-v3; the loader chooses" OFF)
option(ZUML_APPS "Build the command-line program" ${ZUML_TOP_LEVEL})
option(ZUML_TESTS "Build the tests" ${ZUML_TOP_LEVEL})
option(ZUML_EXAMPLES "Build the example programs" ${ZUML_TOP_LEVEL})
option(ZUML_BENCHMARKS "Build the benchmarks" OFF)
option(ZUML_FUZZ "Build the fuzz programs (Clang only)" OFF)
option(ZUML_WERROR "Treat warnings as errors" OFF)
set(ZUML_SANITIZE "" CACHE STRING "Sanitizers: empty, \"address,undefined\" or \"thread\"")
set_property(CACHE ZUML_SANITIZE PROPERTY STRINGS "" "address,undefined" "thread")

# In the order of the floors: a subsystem uses only those before it, so a shorter list that begins
# with core still builds.
set(ZUML_SUBSYSTEMS core algebra filters geometry colour io morphology drawing threshold extension
                    regions edges attribute watershed matching display inspection
    CACHE STRING "Subsystems to build")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  # The sanitized builds also test assertions.
  if(ZUML_SANITIZE)
    set(default_build_type Debug)
  else()
    set(default_build_type Release)
  endif()
  set(CMAKE_BUILD_TYPE ${default_build_type} CACHE STRING "Build type" FORCE)
endif()

if(ZUML_TOP_LEVEL AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(ZUML_CCACHE ccache)
  mark_as_advanced(ZUML_CCACHE)
  if(ZUML_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${ZUML_CCACHE})
  endif()
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(ZUML_TOP_LEVEL)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
endif()

include(GNUInstallDirs)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_INSTALL_RPATH $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
