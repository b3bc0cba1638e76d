# discoplan_header_only(TARGET HEADER PACKAGE): a library of headers. Its folder may hold a whole
# system's own, which a cross compiler must not see; a link shows it this library's alone.
function(discoplan_header_only target header package)
  find_path(${target}-folder ${header} PATHS /usr/local/include /usr/include
    NO_CMAKE_FIND_ROOT_PATH)
  if(NOT ${target}-folder)
    message(FATAL_ERROR "${header} is missing; install the package ${package}")
  endif()
  set(folder ${${target}-folder})
  if(CMAKE_CROSSCOMPILING)
    cmake_path(GET header PARENT_PATH name)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/header_only)
    file(CREATE_LINK ${folder}/${name} ${CMAKE_BINARY_DIR}/header_only/${name} SYMBOLIC)
    set(folder ${CMAKE_BINARY_DIR}/header_only)
  endif()
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${folder})
endfunction()
