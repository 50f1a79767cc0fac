# Precompiles headers that nearly every source of a target includes.  External headers only: a change to one of our own would
# recompile the whole target.  The options make precompiled headers work with ccache.
function(qel_precompile_headers target)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()

# For installed libraries: qel_precompile_library_headers(TARGET SYSTEM header... OWN header...).
#
# A user's build compiles everything once, so it precompiles all of these headers, which saves a third of the build time.  A
# developer's build precompiles only the external headers with clang and none with g++: missing includes are then detected,
# and g++ 12 would report warnings inside precompiled headers.
function(qel_precompile_library_headers target)
    cmake_parse_arguments(PARSE_ARGV 1 given "" "" "SYSTEM;OWN")
    if(NOT QEL_DEVELOPER)
        qel_precompile_headers(${target} ${given_SYSTEM} ${given_OWN})
    elseif(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        qel_precompile_headers(${target} ${given_SYSTEM})
    endif()
endfunction()
