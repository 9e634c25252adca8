# Fails when an object that is compiled for AVX2 has a symbol that another object may share, such as an
# inline function: the linker keeps one of the bodies, which could then run on a processor without AVX2.
# OBJECTS: all objects of the kernels, separated by |. NM: the program that lists symbols.
string(REPLACE "|" ";" objects "${OBJECTS}")
list(FILTER objects INCLUDE REGEX "_avx2\\.")
if(NOT objects)
    message(FATAL_ERROR "no object is compiled for AVX2")
endif()
foreach(object IN LISTS objects)
    execute_process(COMMAND "${NM}" --demangle --defined-only "${object}" OUTPUT_VARIABLE symbols
                    COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]* [WVuwv] [^\n]*" shared "${symbols}")
    if(shared)
        string(REPLACE ";" "\n" shared "${shared}")
        message(FATAL_ERROR "${object} shares\n${shared}")
    endif()
endforeach()
