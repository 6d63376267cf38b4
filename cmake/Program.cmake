# The program: tools/*.cpp over the shared library, found beside it in the build tree and after installation alike.
file(GLOB HALYARD_PROGRAM_SOURCES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/*.cpp")
# A build for fuzzing does without it.
if(HALYARD_PROGRAM_SOURCES AND NOT HALYARD_FUZZ)
    if(CMAKE_CROSSCOMPILING)
        halyard_borrow_headers(CLI11::CLI11 CLI)
        halyard_borrow_headers(nlohmann_json::nlohmann_json nlohmann)
    else()
        find_package(CLI11 REQUIRED)
        find_package(nlohmann_json 3.11 REQUIRED)
    endif()
    add_executable(halyard_program ${HALYARD_PROGRAM_SOURCES})
    set_target_properties(halyard_program PROPERTIES
        OUTPUT_NAME halyard
        BUILD_RPATH "$ORIGIN/../lib"
        BUILD_RPATH_USE_ORIGIN ON
        INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    target_link_libraries(halyard_program PRIVATE halyard::halyard CLI11::CLI11 nlohmann_json::nlohmann_json halyard_warnings)
endif()
