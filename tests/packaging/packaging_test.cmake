# Installs the build, builds a plug-in library of somebody else's against the installed tree, and runs
# the installed program with both. usage: cmake -DBUILD=... -DSOURCE=... -DSCRATCH=... -P this
function(run what)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE code OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT code EQUAL 0)
        message(FATAL_ERROR "${what} ended with ${code}:\n${output}${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_in_output text)
    string(FIND "${output}" "${text}" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "\"${text}\" is not in:\n${output}")
    endif()
endfunction()

unset(ENV{OMBRIX_PLUGIN_PATH})
file(REMOVE_RECURSE "${SCRATCH}")
run("cmake --install" "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${SCRATCH}/first")
# A tree that is moved still works.
file(RENAME "${SCRATCH}/first" "${SCRATCH}/tree")
run("configuring" "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${SCRATCH}/outside" -G Ninja -DCMAKE_BUILD_TYPE=Release
    "-DCMAKE_PREFIX_PATH=${SCRATCH}/tree")
run("building" "${CMAKE_COMMAND}" --build "${SCRATCH}/outside")

set(program "${SCRATCH}/tree/bin/nezaiva")
run("nezaiva list" "${program}" list)
expect_in_output("TexNoiseMaya")
run("nezaiva list --library" "${program}" list --library "${SCRATCH}/outside/liboutside.so")
expect_in_output("OutsideTexture")
run("nezaiva probe" "${program}" probe --library "${SCRATCH}/outside/liboutside.so" "${SOURCE}/scene.json"
    "${SOURCE}/probe.json")
string(REGEX REPLACE "[ \n]" "" output "${output}")
string(REGEX REPLACE "([0-9])\\.0([],])" "\\1\\2" output "${output}")
expect_in_output("[[1,2,3,1]]")
file(REMOVE_RECURSE "${SCRATCH}")
