# discoplan_native_tool(TARGET SOURCE...): a program that writes sources or pages while the tree is
# built, and so runs on this machine: a cross compiler's tree has it built in a tree beside, or in
# one of this machine's that there is already.
set(DISCOPLAN_NATIVE "" CACHE PATH "A build folder of this machine's own, for programs that write sources")
function(discoplan_native_tool target)
  if(NOT CMAKE_CROSSCOMPILING)
    add_executable(${target} EXCLUDE_FROM_ALL ${ARGN})
    target_link_libraries(${target} PRIVATE discoplan-options)
    return()
  endif()
  include(ExternalProject)
  if(DISCOPLAN_NATIVE)
    set(native ${DISCOPLAN_NATIVE})
    if(NOT TARGET discoplan-native)
      add_custom_target(discoplan-native)
    endif()
  else()
    set(native ${CMAKE_BINARY_DIR}/native)
  endif()
  if(NOT TARGET discoplan-native)
    ExternalProject_Add(discoplan-native EXCLUDE_FROM_ALL ON
      SOURCE_DIR ${PROJECT_SOURCE_DIR} BINARY_DIR ${native}
      CMAKE_ARGS -D CMAKE_BUILD_TYPE=Release -D DISCOPLAN_QT=${DISCOPLAN_QT}
                 -D DISCOPLAN_TESTS=OFF -D DISCOPLAN_INSTALL=OFF
      BUILD_COMMAND "" INSTALL_COMMAND "")
  endif()
  get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} ABSOLUTE)
  file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${folder})
  add_custom_target(${target}-native
    COMMAND ${CMAKE_COMMAND} --build ${native} --target ${target} DEPENDS discoplan-native
    BYPRODUCTS ${native}/${folder}/${target} VERBATIM)
  # One after another, as they are built in one folder.
  get_property(previous GLOBAL PROPERTY DISCOPLAN_LAST_NATIVE_TOOL)
  add_dependencies(${target}-native discoplan-native ${previous})
  set_property(GLOBAL PROPERTY DISCOPLAN_LAST_NATIVE_TOOL ${target}-native)
  add_executable(${target} IMPORTED GLOBAL)
  set_target_properties(${target} PROPERTIES IMPORTED_LOCATION ${native}/${folder}/${target})
  add_dependencies(${target} ${target}-native)
endfunction()
