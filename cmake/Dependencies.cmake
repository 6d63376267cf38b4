# What the library stands on, gathered in the target halyard_dependencies. On Windows the system gives it all.
add_library(halyard_dependencies INTERFACE)

if(WIN32)
    target_link_libraries(halyard_dependencies INTERFACE gdi32 gdiplus)
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
