# What every target of ours is compiled with. The instrumentation of sanitizers makes g++ see uses of uninitialised
# memory that are none, in the standard library's own headers: such builds leave that warning to the others.
add_library(halyard_warnings INTERFACE)
if(MSVC)
    target_compile_options(halyard_warnings INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus)
else()
    target_compile_options(halyard_warnings INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
        $<$<BOOL:${HALYARD_WERROR}>:-Werror>)
endif()
if(HALYARD_SANITIZED AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(halyard_warnings INTERFACE -Wno-maybe-uninitialized)
endif()
