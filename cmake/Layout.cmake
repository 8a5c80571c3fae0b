# The build tree has the install shape, so a build runs without installing:
#   bin/verdin...                 programs
#   lib/verdin/                   the window library, loaded only when a window is shown
#   lib/verdin/Plug-ins/*.so      bundled plug-ins
#   share/verdin/...              data
include(GNUInstallDirs)
# The program finds its libraries and plug-ins beside itself (<prefix>/lib/verdin), so the
# installed tree keeps exactly the build tree's shape, whatever the distribution's
# library directory is called.
set(VERDIN_INSTALL_LIBDIR lib/verdin)
set(VERDIN_BIN_DIR      ${CMAKE_BINARY_DIR}/bin)
set(VERDIN_LIB_DIR      ${CMAKE_BINARY_DIR}/lib/verdin)
set(VERDIN_PLUGIN_DIR   ${CMAKE_BINARY_DIR}/lib/verdin/Plug-ins)
set(VERDIN_SHARE_DIR    ${CMAKE_BINARY_DIR}/share/verdin)
set(VERDIN_TEST_BIN_DIR ${CMAKE_BINARY_DIR}/tests/bin)
file(MAKE_DIRECTORY ${VERDIN_BIN_DIR} ${VERDIN_PLUGIN_DIR} ${VERDIN_SHARE_DIR})

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${VERDIN_BIN_DIR})

# A plug-in shipped with the player: a module library in lib/verdin/Plug-ins, no "lib" prefix.
function(verdin_add_plugin name)
  add_library(${name} MODULE ${ARGN})
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    LIBRARY_OUTPUT_DIRECTORY ${VERDIN_PLUGIN_DIR}
    C_VISIBILITY_PRESET hidden
    CXX_VISIBILITY_PRESET hidden)
  target_link_libraries(${name} PRIVATE verdin_sdk)
  install(TARGETS ${name} LIBRARY DESTINATION ${VERDIN_INSTALL_LIBDIR}/Plug-ins)
endfunction()

# The decoding library of a bundled plug-in that opens it only when needed: a module
# library in lib/verdin, named as given (the plug-in asks for "../<name>.so").
function(verdin_add_plugin_library name)
  add_library(${name} MODULE ${ARGN})
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    LIBRARY_OUTPUT_DIRECTORY ${VERDIN_LIB_DIR}
    C_VISIBILITY_PRESET hidden
    CXX_VISIBILITY_PRESET hidden)
  target_link_libraries(${name} PRIVATE verdin_sdk)
  install(TARGETS ${name} LIBRARY DESTINATION ${VERDIN_INSTALL_LIBDIR})
endfunction()

# Adds every subfolder of the current source folder that has a CMakeLists.txt,
# in name order, so that each piece of a folder keeps its build lines beside it.
# verdin_add_subfolders([EXCLUDE name...])
function(verdin_add_subfolders)
  cmake_parse_arguments(S "" "" "EXCLUDE" ${ARGN})
  file(GLOB children LIST_DIRECTORIES true RELATIVE ${CMAKE_CURRENT_SOURCE_DIR}
       CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*)
  list(SORT children)
  foreach(child IN LISTS children)
    if(child IN_LIST S_EXCLUDE)
      continue()
    endif()
    if(IS_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/${child}
       AND EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${child}/CMakeLists.txt)
      add_subdirectory(${child})
    endif()
  endforeach()
endfunction()
