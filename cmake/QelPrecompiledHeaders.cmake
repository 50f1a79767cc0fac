# What nearly every source of a target includes is parsed once for all of them.  Only headers from outside: a change to one of
# ours must not compile everything again.  The options let ccache see through it.
function(qel_precompile_headers target)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()

# For what is shipped: qel_precompile_library_headers(TARGET SYSTEM header... OWN header...).
#
# A user's build compiles everything once and takes all of them, which saves a third of its time.  A developer's takes only
# the headers from outside, and with g++ none: each source is then compiled with its own includes, which shows a missing one,
# and g++ 12 reports warnings inside code that comes from a precompiled header.
function(qel_precompile_library_headers target)
    cmake_parse_arguments(PARSE_ARGV 1 given "" "" "SYSTEM;OWN")
    if(NOT QEL_DEVELOPER)
        qel_precompile_headers(${target} ${given_SYSTEM} ${given_OWN})
    elseif(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        qel_precompile_headers(${target} ${given_SYSTEM})
    endif()
endfunction()
