# One interface target carries the warnings of every target here.  In a developer's build they are errors; a user's build has
# none, since a newer compiler with more warnings must not break it.
add_library(QelWarnings INTERFACE)
if(NOT QEL_DEVELOPER)
    target_compile_options(QelWarnings INTERFACE -w)
    return()
endif()
target_compile_options(QelWarnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wold-style-cast -Wformat=2 -Wimplicit-fallthrough -Werror)
# g++ 12 takes "text" + std::string for overlapping memory.  clang reports a parameter that has the name of a constant in the
# namespace; g++ reports what a reader could confuse.
target_compile_options(QelWarnings INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> $<$<CXX_COMPILER_ID:Clang>:-Wno-shadow>)
