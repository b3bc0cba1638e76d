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
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

find_program(GZIP gzip)
set(changelog ${CMAKE_BINARY_DIR}/changelog.gz)
if(GZIP)
  execute_process(COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/cmake/changelog OUTPUT_FILE ${changelog})
endif()

set(abi ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(this "= ${PROJECT_VERSION}")
set(about "Discoplan draws the plots of a measured semiconductor wafer: coloured and
contour maps, surfaces, bars, histograms and line scans, the same to the
pixel everywhere.")

# discoplan_package(COMPONENT NAME SECTION DEPENDS SUMMARY WHAT): the rest of its description is the
# same for all. Packages of others are found by what is linked, those made here are named.
macro(discoplan_package component name section depends summary what)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  string(REPLACE ";" ", " CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${about}\n.\n${what}")
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(doc ${CMAKE_INSTALL_DATAROOTDIR}/doc/${name})
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${doc} RENAME copyright
    COMPONENT ${component})
  if(GZIP)
    install(FILES ${changelog} DESTINATION ${doc} COMPONENT ${component})
  endif()
endmacro()

# discoplan_library_package(COMPONENT LIBRARY NAME DEPENDS SUMMARY WHAT): one shared library, with
# what other packages are told of it. A trigger tells ldconfig; CPack would add scripts that call it,
# but for scripts of one's own: those named here don't exist, so that the package has none.
macro(discoplan_library_package component library name depends summary what)
  discoplan_package(${component} ${name} libs "${depends}" "${summary}" "${what}")
  set(control ${CMAKE_BINARY_DIR}/debian/${name})
  file(WRITE ${control}/shlibs "${library} ${abi} ${name} (${this})\n")
  file(WRITE ${control}/triggers "activate-noawait ldconfig\n")
  set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA
    ${control}/shlibs ${control}/triggers ${control}/postinst ${control}/postrm)
endmacro()

set(CPACK_COMPONENTS_ALL)
set(library)
set(libraries)
set(qt)
if(BUILD_SHARED_LIBS)
  set(library "libdiscoplan${abi} (${this})")
  set(libraries ${library})
  discoplan_library_package(library libdiscoplan libdiscoplan${abi} ""
    "plots of semiconductor wafers: library"
    "This package holds the library for programs that use it.")
  if(DISCOPLAN_HEADLESS)
    list(APPEND libraries "libdiscoplan-headless${abi} (${this})")
    discoplan_library_package(headless libdiscoplan-headless libdiscoplan-headless${abi}
      "${library}" "plots of semiconductor wafers: pictures without a display"
      "This package holds the host that paints into PNG files.")
  endif()
  if(DISCOPLAN_QT)
    set(qt "libdiscoplan-qt6-${abi} (${this})")
    discoplan_library_package(qt libdiscoplan-qt6 libdiscoplan-qt6-${abi} "${library}"
      "plots of semiconductor wafers: Qt widgets"
      "This package holds the nine plots as widgets, for programs that use them.")
  endif()
endif()
if(DISCOPLAN_C)
  set(cxx_abi ${abi})
  set(abi 1)
  discoplan_library_package(c libdiscoplan-c libdiscoplan-c1 fonts-liberation
    "plots of semiconductor wafers: C interface"
    "This package holds the library for programs in C and in languages that call C.")
  set(abi ${cxx_abi})
  discoplan_package(c-develop libdiscoplan-c-dev libdevel "libdiscoplan-c1 (${this})"
    "plots of semiconductor wafers: development files of the C interface"
    "This package holds discoplan.h and its pkg-config file.")
endif()
discoplan_package(develop libdiscoplan-dev libdevel "${libraries}"
  "plots of semiconductor wafers: development files"
  "This package holds headers, CMake targets and pkg-config files. It needs\na compiler of C++20.")
if(DISCOPLAN_PROGRAMS)
  set(needs fonts-liberation)
  if(NOT DISCOPLAN_WHOLE_PROGRAM OR NOT DISCOPLAN_CAN_LINK_WHOLE)
    list(APPEND needs ${libraries})
  endif()
  discoplan_package(program discoplan science "${needs}"
    "plots of semiconductor wafers: command line"
    "This package holds the command line program, which reads tables and lot\nexports.")
endif()
if(DISCOPLAN_QT)
  discoplan_package(qt-develop libdiscoplan-qt6-dev libdevel
    "libdiscoplan-dev (${this});${qt};${library};qt6-base-dev"
    "plots of semiconductor wafers: development files of the Qt widgets"
    "This package holds headers, CMake targets and the widgets for Qt Designer.")
  if(DISCOPLAN_PROGRAMS)
    discoplan_package(qt-programs discoplan-qt science "discoplan (${this});${libraries};${qt}"
      "plots of semiconductor wafers: workbench"
      "This package holds the window to look at wafers, export and print them.")
  endif()
endif()
include(CPack)
