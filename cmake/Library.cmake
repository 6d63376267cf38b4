# The library. Its sources are compiled once, into halyard_objects: the shared library that hosts link is made of
# them, and so is what tests, benchmarks and fuzz targets link, because these also reach what is not exported.
file(GLOB_RECURSE HALYARD_SOURCES CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/*.cpp")
# The device classes: in software, or over the system's own device where there is one.
set(HALYARD_DEVICE_SOURCES ${HALYARD_SOURCES})
if(WIN32)
    list(FILTER HALYARD_DEVICE_SOURCES INCLUDE REGEX
        "/src/platform/(win32/(C[A-Z]|Gdi).*|raster/(ClipRegion|DeviceMapping|FontPixels|PolygonFill))\\.cpp$")
else()
    list(FILTER HALYARD_DEVICE_SOURCES INCLUDE REGEX "/src/platform/raster/")
endif()
list(FILTER HALYARD_SOURCES EXCLUDE REGEX "/src/platform/(raster/|win32/(C[A-Z]|Gdi))")
if(WIN32)
    list(FILTER HALYARD_SOURCES EXCLUDE REGEX "/src/platform/posix/")
else()
    list(FILTER HALYARD_SOURCES EXCLUDE REGEX "/src/platform/win32/")
endif()
list(APPEND HALYARD_SOURCES ${HALYARD_DEVICE_SOURCES})
# A host with the vendor's class library has the vendor's device classes, and so has the library built for it
# (platform/VendorClasses.h).
option(HALYARD_VENDOR_CLASSES "Take CDC and its companions from the vendor's class library" OFF)
if(HALYARD_VENDOR_CLASSES)
    set(CMAKE_MFC_FLAG 2)
    add_compile_definitions(_AFXDLL)
    list(FILTER HALYARD_SOURCES EXCLUDE REGEX
        "/src/platform/(win32/(CDC|GdiContext|GdiFar|GdiMap|GdiObjects)|CDC|DeviceOperations|GdiObjects)\\.cpp$")
endif()
if(NOT HALYARD_SOURCES)
    message(FATAL_ERROR "src/ holds no sources")
endif()

if(WIN32)
    enable_language(RC)
    set(HALYARD_RESOURCES "${PROJECT_BINARY_DIR}/halyard.rc")
    configure_file("${CMAKE_CURRENT_LIST_DIR}/halyard.rc.in" "${HALYARD_RESOURCES}" @ONLY)
    set_source_files_properties("${HALYARD_RESOURCES}" PROPERTIES
        OBJECT_DEPENDS "${PROJECT_SOURCE_DIR}/src/support/Messages.def")
    list(APPEND HALYARD_SOURCES "${HALYARD_RESOURCES}")
endif()

add_library(halyard_objects OBJECT ${HALYARD_SOURCES})
set_target_properties(halyard_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
target_include_directories(halyard_objects PUBLIC "${PROJECT_SOURCE_DIR}/src")
target_compile_definitions(halyard_objects
    PRIVATE HALYARD_BUILD
    PUBLIC HALYARD_VERSION="${HALYARD_VERSION}" HALYARD_VERSION_NUMBER=${HALYARD_VERSION_NUMBER})
target_link_libraries(halyard_objects PUBLIC halyard_dependencies PRIVATE halyard_warnings)

add_library(halyard SHARED)
add_library(halyard::halyard ALIAS halyard)
# CMake wants a source of the target's own to know its language; the objects bring the rest.
set_target_properties(halyard PROPERTIES
    LINKER_LANGUAGE CXX
    VERSION ${HALYARD_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME halyard)
if(WIN32)
    set_target_properties(halyard PROPERTIES PREFIX "")
endif()
target_compile_features(halyard PUBLIC cxx_std_20)
target_compile_definitions(halyard
    PUBLIC $<BUILD_INTERFACE:HALYARD_VERSION="${HALYARD_VERSION}">
           $<BUILD_INTERFACE:HALYARD_VERSION_NUMBER=${HALYARD_VERSION_NUMBER}>)
target_include_directories(halyard PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/halyard>)
target_link_libraries(halyard PRIVATE $<BUILD_INTERFACE:halyard_objects>)
if(NOT WIN32)
    target_link_options(halyard PRIVATE $<$<NOT:$<BOOL:${HALYARD_SANITIZED}>>:LINKER:--no-undefined>)
endif()

# For targets of this repository that reach what the library does not export.
add_library(halyard_inside INTERFACE)
target_compile_definitions(halyard_inside INTERFACE HALYARD_STATIC)
target_link_libraries(halyard_inside INTERFACE halyard_objects $<TARGET_OBJECTS:halyard_objects>)
