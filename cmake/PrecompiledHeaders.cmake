# Headers that many files include and few change are compiled once for each kind of target. They are a
# matter of speed alone: every file includes what it needs, and `make clang` compiles without them. Not for
# libombrix: behind precompiled headers g++ 12 takes copies inside the standard string for overflows.
option(NEZAIVA_PCH "Compile common headers once" ON)

# nezaiva_precompile(TARGET HEADER...): the target's files begin with these headers.
function(nezaiva_precompile target)
    if(NEZAIVA_PCH)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# nezaiva_reuse_precompiled(TARGET FROM): the same headers, compiled once for all targets of equal flags.
function(nezaiva_reuse_precompiled target from)
    if(NEZAIVA_PCH)
        target_precompile_headers(${target} REUSE_FROM ${from})
    endif()
endfunction()
