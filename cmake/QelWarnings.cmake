# One interface target carries the warnings of every target here; warnings are errors.
add_library(QelWarnings INTERFACE)
target_compile_options(QelWarnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wold-style-cast -Wformat=2 -Wimplicit-fallthrough -Werror)
# g++ 12 takes "text" + std::string for overlapping memory.  clang takes a parameter for shadowing a constant of a
# namespace that is in scope; what a reader could confuse, g++ tells.
target_compile_options(QelWarnings INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> $<$<CXX_COMPILER_ID:Clang>:-Wno-shadow>)
