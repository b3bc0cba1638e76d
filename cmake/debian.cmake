# Debian packages, one for each component: `cpack` in the build folder makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME discoplan)
set(CPACK_PACKAGE_VENDOR Discoplan)
set(CPACK_PACKAGE_CONTACT "The Discoplan developers <developers@discoplan.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${CMAKE_BINARY_DIR}/discoplan ${CMAKE_BINARY_DIR}/hosts ${CMAKE_BINARY_DIR}/hosts/qt)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

find_program(GZIP gzip)
set(changelog ${CMAKE_BINARY_DIR}/changelog.gz)
if(GZIP)
  execute_process(COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/cmake/changelog OUTPUT_FILE ${changelog})
endif()

# discoplan_package(COMPONENT NAME SECTION DEPENDS SUMMARY WHAT): the rest of its description is the
# same for all.
set(about "Discoplan draws the plots of a measured semiconductor wafer: coloured and contour
maps, surfaces, bars, histograms and line scans, the same to the pixel everywhere.")
function(discoplan_package component name section depends summary what)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  string(REPLACE ";" ", " depends "${depends}")
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${about}\n.\n${what}" PARENT_SCOPE)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
  set(doc ${CMAKE_INSTALL_DATAROOTDIR}/doc/${name})
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${doc} RENAME copyright
    COMPONENT ${component})
  if(GZIP)
    install(FILES ${changelog} DESTINATION ${doc} COMPONENT ${component})
  endif()
endfunction()

set(CPACK_COMPONENTS_ALL)
set(abi ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(this "= ${PROJECT_VERSION}")
if(BUILD_SHARED_LIBS)
  set(needs_libraries "libdiscoplan${abi} (${this})" "libdiscoplan-headless${abi} (${this})")
  set(needs_qt "libdiscoplan-qt6-${abi} (${this})")
  discoplan_package(library libdiscoplan${abi} libs "" "plots of semiconductor wafers: library"
    "This package holds the library for programs that use it.")
  if(DISCOPLAN_HEADLESS)
    discoplan_package(headless libdiscoplan-headless${abi} libs ""
      "plots of semiconductor wafers: pictures without a display"
      "This package holds the host that paints into PNG files.")
  endif()
endif()
discoplan_package(develop libdiscoplan-dev libdevel "${needs_libraries}"
  "plots of semiconductor wafers: development files"
  "This package holds headers, CMake targets and pkg-config files; C++20 is needed.")
if(DISCOPLAN_PROGRAMS)
  discoplan_package(program discoplan science "fonts-liberation"
    "plots of semiconductor wafers: command line"
    "This package holds the command line program, which reads tables and lot exports.")
endif()
if(DISCOPLAN_QT)
  if(BUILD_SHARED_LIBS)
    discoplan_package(qt libdiscoplan-qt6-${abi} libs ""
      "plots of semiconductor wafers: Qt widgets"
      "This package holds the nine plots as widgets, for programs that use them.")
  endif()
  discoplan_package(qt-develop libdiscoplan-qt6-dev libdevel
    "libdiscoplan-dev (${this});qt6-base-dev;${needs_qt}"
    "plots of semiconductor wafers: development files of the Qt widgets"
    "This package holds headers, CMake targets and the widgets for Qt Designer.")
  if(DISCOPLAN_PROGRAMS)
    discoplan_package(qt-programs discoplan-qt science "discoplan (${this})"
      "plots of semiconductor wafers: workbench and reports"
      "This package holds the window to look at wafers, and pages in PDF and SVG.")
  endif()
endif()
include(CPack)
