# Each subsystem folder is one library target, its sources picked up by glob so
# that adding a file needs no edit here. A folder without sources yet becomes an
# interface target, so that dependents can already name it. PRECOMPILE names
# headers parsed once for the whole target (Qt's, for the panel targets).
function(tarvex_library name)
  cmake_parse_arguments(ARG "" "" "DEPS;PRIVATE_DEPS;PRECOMPILE" ${ARGN})
  file(GLOB _src CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  if(_src)
    add_library(${name} STATIC ${_src})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${ARG_DEPS} PRIVATE ${ARG_PRIVATE_DEPS})
    if(ARG_PRECOMPILE)
      target_precompile_headers(${name} PRIVATE ${ARG_PRECOMPILE})
    endif()
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} INTERFACE ${ARG_DEPS})
  endif()
endfunction()

# One GoogleTest executable per test folder; ctest runs every test case.
# EXTRA names more folders whose tests join the same executable (the GUI tests of
# every subsystem's gui folder share one).
function(tarvex_test_folder name folder)
  cmake_parse_arguments(ARG "" "" "DEPS;ENV;EXTRA" ${ARGN})
  set(_globs "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp")
  foreach(_extra IN LISTS ARG_EXTRA)
    list(APPEND _globs "${CMAKE_CURRENT_SOURCE_DIR}/${_extra}/*.cpp")
  endforeach()
  file(GLOB _src CONFIGURE_DEPENDS ${_globs})
  if(NOT _src)
    return()
  endif()
  add_executable(${name} ${_src})
  target_link_libraries(${name} PRIVATE ${ARG_DEPS} tarvex_testsupport GTest::gtest GTest::gtest_main GTest::gmock)
  # GoogleTest's headers are the larger part of every test file's compile:
  # they are parsed once per executable.
  target_precompile_headers(${name} PRIVATE <gtest/gtest.h> <gmock/gmock.h> <string> <vector> <sstream> <filesystem>)
  # Through a precompiled header the standard library no longer counts as a
  # system header, and g++ 12 then reports its known false bounds warnings on
  # inlined string copies in the tests' text building.
  target_compile_options(${name} PRIVATE -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict)
  gtest_discover_tests(${name}
    DISCOVERY_MODE PRE_TEST
    WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
    TEST_PREFIX "${folder}."
    PROPERTIES ENVIRONMENT "${ARG_ENV}")
endfunction()

# Benchmarks: one executable per file.
function(tarvex_benchmarks)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB _src CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  foreach(f ${_src})
    get_filename_component(stem "${f}" NAME_WE)
    add_executable(${stem} "${f}")
    target_link_libraries(${stem} PRIVATE ${ARG_DEPS} benchmark::benchmark benchmark::benchmark_main)
  endforeach()
endfunction()
