# One set of flags for everything. The order of floating-point operations is contract: no contraction
# into fused multiply-adds, no fast-math, no machine-specific code outside the kernels that are
# dispatched at run time.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O3 -DNDEBUG")
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

# Unique symbols would pin the plug-in library in memory after dlclose.
set(_nezaiva_gnu_only "$<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>")
# g++ 12 warns of overlapping copies inside the standard string's operator+ that cannot happen.
set(_nezaiva_gnu_false_alarms "$<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>")
add_compile_options(-ffp-contract=off -fno-math-errno ${_nezaiva_gnu_only}
                    -Wall -Wextra -Wpedantic -Wshadow -Wdouble-promotion -Wnon-virtual-dtor
                    -Woverloaded-virtual -Werror ${_nezaiva_gnu_false_alarms})

if(NEZAIVA_SANITIZE)
    add_compile_options(-fsanitize=${NEZAIVA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${NEZAIVA_SANITIZE})
else()
    add_link_options(-Wl,--no-undefined)
endif()

# For a second compiler's warnings no code has to be made: the files are read, and what would hold code is
# empty.
option(NEZAIVA_SYNTAX_ONLY "Read all files without making code" OFF)
if(NEZAIVA_SYNTAX_ONLY)
    set(_touch "${CMAKE_COMMAND} -E touch")
    set(CMAKE_CXX_COMPILE_OBJECT
        "<CMAKE_CXX_COMPILER> <DEFINES> <INCLUDES> <FLAGS> -fsyntax-only -c <SOURCE>" "${_touch} <OBJECT>")
    foreach(_rule LINK_EXECUTABLE CREATE_SHARED_LIBRARY CREATE_SHARED_MODULE)
        set(CMAKE_CXX_${_rule} "${_touch} <TARGET>")
    endforeach()
endif()

find_program(NEZAIVA_CCACHE ccache)
if(NEZAIVA_CCACHE AND NOT NEZAIVA_SYNTAX_ONLY)
    # Without this it compiles everything anew that begins with precompiled headers.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros
        "${NEZAIVA_CCACHE}")
endif()

# nezaiva_avx2_source(FILE...): compiles files for AVX2. Such a file includes nothing that another
# file could share as an inline function: the linker may keep either body. With its own allocation of
# registers across calls g++ 12 forgets to clear the upper halves of the registers in functions that
# called one of the same file, and the caller then pays for it at each of its operations.
function(nezaiva_avx2_source)
    set_source_files_properties(${ARGN} PROPERTIES SKIP_PRECOMPILE_HEADERS ON COMPILE_OPTIONS
        "-mavx2;-mno-fma;$<$<CXX_COMPILER_ID:GNU>:-fno-ipa-ra>")
endfunction()
