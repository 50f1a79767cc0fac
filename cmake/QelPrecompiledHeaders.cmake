# What nearly every source of a target includes is parsed once for all of them.  Only headers from outside: a change to one of
# ours must not compile everything again.  The options let ccache see through it.
function(qel_precompile_headers target)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()

# As above for what is shipped.  In a developer's build with g++ each source is compiled with its own includes only: that
# shows a missing include, and g++ 12 reports warnings inside code that comes from a precompiled header.
function(qel_precompile_library_headers target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL Clang OR NOT QEL_DEVELOPER)
        qel_precompile_headers(${target} ${ARGN})
    endif()
endfunction()
