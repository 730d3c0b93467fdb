# The installation tree: what MainDir points at when the program runs.
#
#   <prefix>/bin                          programs and the start script
#   <prefix>/Preprocessor/PrepPanels      panel files of the pre-processor
#   <prefix>/Tarvex/TarvexPanels          panel files of the main program and model execution
#   <prefix>/Postprocessor/VelsPanels     panel files of the post-processor
#   <prefix>/ILOG                         kept for the layout's sake, may stay empty
#   <prefix>/Demo                         the demonstration cases (.dem and their data)
#   <prefix>/bitmaps                      pictures, found as "../bitmaps/x" from a panel directory
#   <prefix>/help                         help pages and pictures, found as "../help/x"
#
# The same tree is laid out by every build under ${TARVEX_STAGE_DIR} (build/stage by
# default), so that tests and the desktop program run against it without installing.
# All seven data directories exist in both trees, empty or not.
#
# Usage, from any CMakeLists.txt below the top one:
#
#   tarvex_install_files(DESTINATION Tarvex/TarvexPanels
#                        FILES PMainPanel.ui PLogPanel.ui)
#   file(GLOB _pics CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/bitmaps/*")
#   tarvex_install_files(DESTINATION bitmaps FILES ${_pics})
#   tarvex_install_programs(DESTINATION bin FILES tarvex-start.sh)
#
# - DESTINATION is a directory relative to the tree's root (one of the above, or a
#   folder below one of them, e.g. help/images).
# - FILES are relative to the calling directory's source folder, or absolute (generated
#   files in the binary folder work too). Names are kept as they are.
# - install(FILES/PROGRAMS) puts them under the install prefix; a custom target in ALL
#   copies each one into ${TARVEX_STAGE_DIR}/<DESTINATION>, re-copied whenever the
#   source file changes.
# - The umbrella target `tarvex_stage` depends on every such copy. A test that reads the
#   staged tree while being built alone should say so:
#       add_dependencies(test_panels tarvex_stage)
# - Executables are not copied by this function. To put one into the staged tree, give
#   it RUNTIME_OUTPUT_DIRECTORY "${TARVEX_STAGE_DIR}/bin" and install(TARGETS ... DESTINATION bin).

# This file is included before the top file names the stage; give it the same default
# here so that the layout below never lands at the file system's root.
if(NOT TARVEX_STAGE_DIR)
  set(TARVEX_STAGE_DIR "${CMAKE_BINARY_DIR}/stage" CACHE PATH "Staged installation tree")
endif()

set(TARVEX_TREE_DIRS
  Preprocessor/PrepPanels
  Tarvex/TarvexPanels
  Postprocessor/VelsPanels
  ILOG
  Demo
  bitmaps
  help)

# The empty directories of both trees. The stage is also made at configure time so that
# a test run straight after configuring finds it.
set(_tarvex_stage_dirs "")
foreach(_d ${TARVEX_TREE_DIRS})
  install(DIRECTORY DESTINATION "${_d}")
  file(MAKE_DIRECTORY "${TARVEX_STAGE_DIR}/${_d}")
  list(APPEND _tarvex_stage_dirs "${TARVEX_STAGE_DIR}/${_d}")
endforeach()
add_custom_target(tarvex_stage ALL
  COMMAND "${CMAKE_COMMAND}" -E make_directory ${_tarvex_stage_dirs} "${TARVEX_STAGE_DIR}/bin"
  COMMENT "Laying out the staged installation tree"
  VERBATIM)

function(_tarvex_stage_and_install kind)
  cmake_parse_arguments(ARG "" "DESTINATION" "FILES" ${ARGN})
  if(NOT ARG_DESTINATION)
    message(FATAL_ERROR "tarvex_install_${kind}: DESTINATION is required")
  endif()
  if(NOT ARG_FILES)
    return()
  endif()
  string(REGEX REPLACE "/+$" "" _dest "${ARG_DESTINATION}")

  set(_outputs "")
  set(_sources "")
  foreach(f ${ARG_FILES})
    get_filename_component(_src "${f}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    get_filename_component(_name "${_src}" NAME)
    set(_out "${TARVEX_STAGE_DIR}/${_dest}/${_name}")
    add_custom_command(
      OUTPUT "${_out}"
      COMMAND "${CMAKE_COMMAND}" -E make_directory "${TARVEX_STAGE_DIR}/${_dest}"
      COMMAND "${CMAKE_COMMAND}" -E copy "${_src}" "${_out}"
      DEPENDS "${_src}"
      COMMENT "Staging ${_dest}/${_name}"
      VERBATIM)
    list(APPEND _outputs "${_out}")
    list(APPEND _sources "${_src}")
  endforeach()

  # One target per call, numbered, so that calls from any directory never clash.
  get_property(_n GLOBAL PROPERTY TARVEX_STAGE_COUNT)
  if(NOT _n)
    set(_n 0)
  endif()
  math(EXPR _n "${_n} + 1")
  set_property(GLOBAL PROPERTY TARVEX_STAGE_COUNT ${_n})
  string(MAKE_C_IDENTIFIER "${_dest}" _tag)
  set(_target "tarvex_stage_${_n}_${_tag}")
  add_custom_target(${_target} ALL DEPENDS ${_outputs})
  add_dependencies(tarvex_stage ${_target})

  if(kind STREQUAL "programs")
    install(PROGRAMS ${_sources} DESTINATION "${_dest}")
  else()
    install(FILES ${_sources} DESTINATION "${_dest}")
  endif()
endfunction()

# Data files (panels, pictures, help pages, demonstration cases).
function(tarvex_install_files)
  _tarvex_stage_and_install(files ${ARGN})
endfunction()

# Scripts and other files that must stay executable.
function(tarvex_install_programs)
  _tarvex_stage_and_install(programs ${ARGN})
endfunction()

# The start script sits beside the programs.
tarvex_install_programs(DESTINATION bin FILES "${PROJECT_SOURCE_DIR}/scripts/tarvex-start.sh")
