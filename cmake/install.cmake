# Installs libraries, headers and programs, and the files by which CMake and pkg-config find them.

include(CMakePackageConfigHelpers)

install(TARGETS zuml EXPORT ZUMLTargets)
if(ZUML_STATIC)
  install(TARGETS zuml_static EXPORT ZUMLTargets)
endif()
if(ZUML_HWCAPS)
  install(TARGETS zuml_v3 LIBRARY
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/${ZUML_HWCAPS_FOLDER} NAMELINK_SKIP)
endif()
if(TARGET zuml_app)
  install(TARGETS zuml_app)
endif()

install(DIRECTORY zuml DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h" PATTERN detail EXCLUDE)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/ZUML)
install(EXPORT ZUMLTargets NAMESPACE ZUML:: DESTINATION ${package_folder})
configure_package_config_file(cmake/ZUMLConfig.cmake.in ${PROJECT_BINARY_DIR}/ZUMLConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZUMLConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZUMLConfig.cmake ${PROJECT_BINARY_DIR}/ZUMLConfigVersion.cmake
        DESTINATION ${package_folder})

# The path from the folder of zuml.pc to the prefix, so that an install tree can be moved.
file(RELATIVE_PATH ZUML_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/zuml.pc.in ${PROJECT_BINARY_DIR}/zuml.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zuml.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
