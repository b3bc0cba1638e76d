# Compiler options that every target of this tree gets. Results are promised to the bit, so that
# no compiler may fuse a multiplication with an addition.
add_library(discoplan-options INTERFACE)
target_compile_options(discoplan-options INTERFACE
  -ffp-contract=off $<$<NOT:$<BOOL:${EMSCRIPTEN}>>:-fno-semantic-interposition>
  -Wall -Wextra -Wconversion -Wshadow
  # g++ 12 sees overlaps in sums of texts where there are none.
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
  $<$<BOOL:${DISCOPLAN_WERROR}>:-Werror>)

# discoplan_library(TARGET BUILDING): what every shared library of ours is: its version, and the
# mark by which its export header knows who makes it.
function(discoplan_library target building)
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  if(BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PRIVATE ${building})
  endif()
endfunction()

# discoplan_private_libraries(TARGET LIBRARY...): what only TARGET itself calls. A shared library
# holds the way to them; whoever links a static one must be told.
function(discoplan_private_libraries target)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:discoplan-options>)
  foreach(library IN LISTS ARGN)
    if(BUILD_SHARED_LIBS)
      target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:${library}>)
    else()
      target_link_libraries(${target} PRIVATE ${library})
    endif()
  endforeach()
endfunction()
