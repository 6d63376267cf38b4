# Headers, library, program, CMake package, pkg-config file, man page, completion.
include(CMakePackageConfigHelpers)
set(HALYARD_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/halyard")

install(TARGETS halyard EXPORT halyardTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET halyard_program)
    install(TARGETS halyard_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# What one system's build of platform/ keeps to itself is no public face.
install(DIRECTORY src/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/halyard
    FILES_MATCHING PATTERN "*.h" PATTERN "*.def"
    PATTERN "posix" EXCLUDE
    PATTERN "file" EXCLUDE
    PATTERN "font" EXCLUDE
    PATTERN "picture" EXCLUDE
    PATTERN "raster" EXCLUDE
    PATTERN "win32" EXCLUDE)

install(EXPORT halyardTargets NAMESPACE halyard:: DESTINATION ${HALYARD_PACKAGE_DIR})
configure_package_config_file(cmake/halyardConfig.cmake.in "${PROJECT_BINARY_DIR}/halyardConfig.cmake"
    INSTALL_DESTINATION ${HALYARD_PACKAGE_DIR})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/halyardConfigVersion.cmake"
    VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/halyardConfig.cmake" "${PROJECT_BINARY_DIR}/halyardConfigVersion.cmake"
    DESTINATION ${HALYARD_PACKAGE_DIR})

# The install prefix may still be chosen at install time: the file finds itself by its own place.
file(RELATIVE_PATH HALYARD_PC_TO_PREFIX
    "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" HALYARD_PC_TO_PREFIX "${HALYARD_PC_TO_PREFIX}")
configure_file(cmake/halyard.pc.in "${PROJECT_BINARY_DIR}/halyard.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/halyard.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

if(EXISTS "${PROJECT_SOURCE_DIR}/docs/halyard.1")
    install(FILES docs/halyard.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endif()
if(EXISTS "${PROJECT_SOURCE_DIR}/tools/completion/halyard.bash")
    install(FILES tools/completion/halyard.bash
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions" RENAME halyard)
endif()
