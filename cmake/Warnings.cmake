# What every target of ours is compiled with.
add_library(halyard_warnings INTERFACE)
target_compile_options(halyard_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${HALYARD_WERROR}>:-Werror>)
