include(CMakePackageConfigHelpers)

install(TARGETS discoplan EXPORT discoplan-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS discoplan-headless EXPORT discoplan-headless-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS discoplan-program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/discoplan DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/hosts/headless
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/hosts FILES_MATCHING PATTERN "*.h")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/discoplan)
install(EXPORT discoplan-targets NAMESPACE discoplan:: DESTINATION ${package_dir})
install(EXPORT discoplan-headless-targets NAMESPACE discoplan:: DESTINATION ${package_dir})
configure_package_config_file(cmake/discoplan-config.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/discoplan-config-version.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/discoplan-config-version.cmake
        DESTINATION ${package_dir})

configure_file(cmake/discoplan.pc.in ${CMAKE_CURRENT_BINARY_DIR}/discoplan.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/discoplan.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
