# What is installed, in one component for each Debian package: a library for programs that run, what
# a programmer needs of it, and the programs, with Qt apart from what does without.
include(CMakePackageConfigHelpers)

set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/discoplan)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/discoplan)
if(BUILD_SHARED_LIBS)
  set(static OFF)
else()
  set(static ON)
endif()

# discoplan_install(TARGET RUN DEVELOP HEADER_FOLDER...): a library for component RUN, how to find
# it and its headers for component DEVELOP, but those named in the list `private_headers`.
function(discoplan_install target run develop)
  install(TARGETS ${target} EXPORT ${target}-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${run} NAMELINK_COMPONENT ${develop}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${develop}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${run}
    INCLUDES DESTINATION ${include_dir})
  install(EXPORT ${target}-targets NAMESPACE discoplan:: DESTINATION ${package_dir}
    COMPONENT ${develop})
  set(excluded)
  foreach(name IN ITEMS designer LISTS private_headers)
    list(APPEND excluded PATTERN ${name} EXCLUDE)
  endforeach()
  foreach(folder IN LISTS ARGN)
    cmake_path(GET folder PARENT_PATH parent)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder} DESTINATION ${include_dir}/${parent}
      COMPONENT ${develop} FILES_MATCHING PATTERN "*.h" ${excluded})
  endforeach()
endfunction()

# discoplan_pkg_config(COMPONENT LIBRARY REQUIRES STATIC_REQUIRES STATIC_LIBS)
function(discoplan_pkg_config component library requires static_requires static_libs)
  if(static)
    list(APPEND requires ${static_requires})
    set(libs "${static_libs}")
    set(cflags -DDISCOPLAN_STATIC)
  else()
    set(libs)
  endif()
  string(JOIN ", " requires ${requires})
  file(RELATIVE_PATH up_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  if(NOT language)
    set(language C++20)
  endif()
  configure_file(cmake/discoplan.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endfunction()

# The library, and the standard library that it was built with, for its headers to compare.
discoplan_install(discoplan library develop discoplan)
discoplan_pkg_config(develop discoplan "" "" -pthread)
include(CheckCXXSourceCompiles)
foreach(kind IN ITEMS __GLIBCXX__ _LIBCPP_VERSION _MSVC_STL_VERSION)
  check_cxx_source_compiles("
    #include <version>
    #ifndef ${kind}
    #error another one
    #endif
    int main() {}" DISCOPLAN_HAS_${kind})
  if(DISCOPLAN_HAS_${kind})
    set(standard_library ${kind})
  endif()
endforeach()
configure_file(cmake/built_with.h.in ${CMAKE_BINARY_DIR}/installed/discoplan/built_with.h @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/installed/discoplan/built_with.h
  DESTINATION ${include_dir}/discoplan COMPONENT develop)

if(DISCOPLAN_HEADLESS)
  set(private_headers agg_headers.h blending.h glyph.h huffman_codes.h letter_path.h little_endian.h path_strokes.h
    pixel_deflater.h pixel_path.h shape_cells.h)
  discoplan_install(discoplan-headless headless develop hosts/headless)
  set(private_headers)
  set(requires freetype2 libpng zlib)
  if(DISCOPLAN_FONTCONFIG)
    list(APPEND requires fontconfig)
  endif()
  if(DISCOPLAN_FIGURE_FILES)
    set(libs "-lhpdf")
  endif()
  discoplan_pkg_config(develop discoplan-headless "discoplan = ${PROJECT_VERSION}" "${requires}"
    "${libs}")
endif()
# The C interface stands on nothing of these: programs in other languages take it alone.
if(DISCOPLAN_C)
  install(TARGETS discoplan-c EXPORT discoplan-c-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT c NAMELINK_COMPONENT c-develop
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT c-develop
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT c
    INCLUDES DESTINATION ${include_dir})
  install(EXPORT discoplan-c-targets NAMESPACE discoplan:: DESTINATION ${package_dir}
    COMPONENT c-develop)
  install(FILES ${PROJECT_SOURCE_DIR}/bindings/c/discoplan.h
    DESTINATION ${include_dir} COMPONENT c-develop)
  set(language C99)
  discoplan_pkg_config(c-develop discoplan-c "" "" "")
  unset(language)
endif()
if(DISCOPLAN_PROGRAMS)
  install(TARGETS discoplan-program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
endif()

if(DISCOPLAN_QT)
  discoplan_install(discoplan-qt6 qt qt-develop hosts/qt)
  install(FILES ${CMAKE_BINARY_DIR}/generated/hosts/qt/plot_widgets.h
    DESTINATION ${include_dir}/hosts/qt COMPONENT qt-develop)
  discoplan_pkg_config(qt-develop discoplan-qt6
    "discoplan = ${PROJECT_VERSION};Qt6Widgets" "" "")
  if(DISCOPLAN_PROGRAMS)
    install(TARGETS discoplan-view
      RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT qt-programs)
  endif()
  # Where this Qt looks for plugins, below its prefix, which is a package's own.
  if(TARGET discoplan-designer)
    install(TARGETS discoplan-designer
      LIBRARY DESTINATION ${DISCOPLAN_QT_PLUGINS}/designer COMPONENT qt-develop)
  endif()
endif()

configure_package_config_file(cmake/discoplan-config.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/discoplan-config-version.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config-version.cmake
        DESTINATION ${package_dir} COMPONENT develop)

include(cmake/debian.cmake)
