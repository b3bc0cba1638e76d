# Two packages: `core` is the library, the host without a display and the command line program;
# `qt` is all that needs Qt.
include(CMakePackageConfigHelpers)

set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/discoplan)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/discoplan)

# discoplan_install(COMPONENT TARGET HEADER_FOLDER...): a library, how to find it, and its headers.
function(discoplan_install component target)
  install(TARGETS ${target} EXPORT ${target}-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component}
    INCLUDES DESTINATION ${include_dir})
  install(EXPORT ${target}-targets NAMESPACE discoplan:: DESTINATION ${package_dir}
    COMPONENT ${component})
  foreach(folder IN LISTS ARGN)
    cmake_path(GET folder PARENT_PATH parent)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder} DESTINATION ${include_dir}/${parent}
      COMPONENT ${component} FILES_MATCHING PATTERN "*.h" PATTERN designer EXCLUDE)
  endforeach()
endfunction()

# discoplan_pkg_config(COMPONENT NAME LIBRARY REQUIRES)
function(discoplan_pkg_config component name library requires)
  file(RELATIVE_PATH up_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  configure_file(cmake/discoplan.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endfunction()

discoplan_install(core discoplan discoplan)
discoplan_install(core discoplan-headless hosts/headless)
discoplan_pkg_config(core discoplan discoplan "")
discoplan_pkg_config(core discoplan-headless discoplan-headless "discoplan = ${PROJECT_VERSION}")
install(TARGETS discoplan-program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT core)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR}
  RENAME copyright COMPONENT core)

if(DISCOPLAN_QT)
  discoplan_install(qt discoplan-qt6 hosts/qt)
  install(FILES ${CMAKE_BINARY_DIR}/generated/hosts/qt/plot_widgets.h
    DESTINATION ${include_dir}/hosts/qt COMPONENT qt)
  discoplan_pkg_config(qt discoplan-qt6 discoplan-qt6
    "discoplan = ${PROJECT_VERSION} Qt6Widgets Qt6PrintSupport Qt6Svg")
  install(TARGETS discoplan-report discoplan-view
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT qt)
  if(TARGET discoplan-designer)
    install(TARGETS discoplan-designer
      LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/qt6/plugins/designer COMPONENT qt)
  endif()
endif()

configure_package_config_file(cmake/discoplan-config.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/discoplan-config-version.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config-version.cmake
        DESTINATION ${package_dir} COMPONENT core)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME discoplan)
set(CPACK_PACKAGE_VENDOR Discoplan)
set(CPACK_PACKAGE_CONTACT "The Discoplan developers <developers@discoplan.invalid>")
set(CPACK_COMPONENTS_ALL core)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/discoplan ${CMAKE_BINARY_DIR}/hosts)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_CORE_PACKAGE_NAME discoplan)
set(CPACK_COMPONENT_CORE_DESCRIPTION "Plots of semiconductor wafers: library and command line")
if(DISCOPLAN_QT)
  list(APPEND CPACK_COMPONENTS_ALL qt)
  set(CPACK_DEBIAN_QT_PACKAGE_NAME discoplan-qt)
  set(CPACK_DEBIAN_QT_PACKAGE_DEPENDS "discoplan (= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_QT_DESCRIPTION "Plots of semiconductor wafers: Qt widgets, workbench, reports")
endif()
include(CPack)
