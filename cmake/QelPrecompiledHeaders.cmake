# What nearly every source of a target includes is parsed once for all of them.  Only headers from outside: a change to one of
# ours must not compile everything again.  The options let ccache see through it.
function(qel_precompile_headers target)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()

# The same for what is shipped, with clang only: g++ 12 takes code that comes out of a precompiled header for the project's own
# and warns of what it can't know there.  So a source that lacks an include is noticed, too.
function(qel_precompile_library_headers target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        qel_precompile_headers(${target} ${ARGN})
    endif()
endfunction()
