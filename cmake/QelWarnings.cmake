# Interface target with the warning options of all targets.  In a developer's build warnings are errors.  In a user's build
# they are disabled, so that new warnings of a newer compiler cannot break it.
add_library(QelWarnings INTERFACE)
if(NOT QEL_DEVELOPER)
    target_compile_options(QelWarnings INTERFACE -w)
    return()
endif()
target_compile_options(QelWarnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wold-style-cast -Wformat=2 -Wimplicit-fallthrough -Werror)
# -Wmissing-field-initializers: g++ counts the empty base class of a record as a field, although the initializer names the
# fields that it sets and all others have defaults.
target_compile_options(QelWarnings INTERFACE -Wno-missing-field-initializers)
# g++ 12 -Wrestrict: false positive for "literal" + std::string.  clang -Wshadow: also reports parameters that shadow
# constants of the namespace, so only that of g++ is used.
target_compile_options(QelWarnings INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> $<$<CXX_COMPILER_ID:Clang>:-Wno-shadow>)
