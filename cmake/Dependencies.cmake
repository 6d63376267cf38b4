# What the library stands on, gathered in the target halyard_dependencies. On Windows the system gives it all.
add_library(halyard_dependencies INTERFACE)

if(WIN32)
    target_link_libraries(halyard_dependencies INTERFACE gdi32 gdiplus ole32 shell32)
    target_compile_definitions(halyard_dependencies INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0A00)
else()
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(HALYARD_FONTS REQUIRED IMPORTED_TARGET freetype2 fontconfig)
    pkg_check_modules(HALYARD_PICTURES REQUIRED IMPORTED_TARGET libjpeg libtiff-4 libpng)
    find_package(GIF 5 REQUIRED)
    # libgeotiff ships neither a CMake package nor a pkg-config file on Debian 12.
    find_path(HALYARD_GEOTIFF_INCLUDE geotiffio.h PATH_SUFFIXES geotiff REQUIRED)
    find_library(HALYARD_GEOTIFF_LIBRARY geotiff REQUIRED)
    mark_as_advanced(HALYARD_GEOTIFF_INCLUDE HALYARD_GEOTIFF_LIBRARY)

    target_link_libraries(halyard_dependencies INTERFACE
        PkgConfig::HALYARD_FONTS PkgConfig::HALYARD_PICTURES GIF::GIF ${HALYARD_GEOTIFF_LIBRARY} ${CMAKE_DL_LIBS})
    target_include_directories(halyard_dependencies SYSTEM INTERFACE ${HALYARD_GEOTIFF_INCLUDE})
endif()

# Headers that belong to no system, of this machine, for a build for another one. The folder that holds them must not
# be searched as a whole: it holds this system's headers too.
function(halyard_borrow_headers target folder)
    set(borrowed "${PROJECT_BINARY_DIR}/borrowed")
    file(MAKE_DIRECTORY "${borrowed}")
    file(CREATE_LINK "/usr/include/${folder}" "${borrowed}/${folder}" SYMBOLIC)
    if(NOT EXISTS "${borrowed}/${folder}/")
        message(FATAL_ERROR "/usr/include/${folder} is not there: scripts/setup build")
    endif()
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} SYSTEM INTERFACE "${borrowed}")
endfunction()
