# What the tests include most, compiled once: for those of the plain rooms, and for those of the host, which
# read and write JSON.
set(NEZAIVA_TEST_HEADERS <gtest/gtest.h> <algorithm> <cmath> <cstring> <filesystem> <functional> <limits> <memory>
                         <optional> <random> <string> <string_view> <vector>)
function(nezaiva_add_test_headers name)
    cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/headers/${name}.cpp" CONTENT "int main() {}\n" @ONLY)
    add_executable(${name} EXCLUDE_FROM_ALL "${CMAKE_BINARY_DIR}/headers/${name}.cpp")
    target_compile_options(${name} PRIVATE ${NEZAIVA_TEST_OPTIONS})
    target_link_libraries(${name} PRIVATE GTest::gtest ${ARG_LINK})
    nezaiva_precompile(${name} ${NEZAIVA_TEST_HEADERS} ${ARG_UNPARSED_ARGUMENTS})
endfunction()
# Compiling a test takes longer than running it, so tests are optimised a little only. The order of their
# floating-point operations is that of everything else.
set(NEZAIVA_TEST_OPTIONS "$<$<CONFIG:Release>:-O1>")
# Behind precompiled headers g++ 12 takes copies inside the standard string for overflows.
if(NEZAIVA_PCH)
    list(APPEND NEZAIVA_TEST_OPTIONS
         "$<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>")
endif()
nezaiva_add_test_headers(nezaiva_test_headers)
nezaiva_add_test_headers(nezaiva_json_test_headers <nlohmann/json.hpp> LINK nlohmann_json::nlohmann_json)

# nezaiva_add_test(NAME SOURCE... [LINK LIBRARY...] [LABEL LABEL...])
# One test program of GoogleTest cases, one CTest entry of the same name.
function(nezaiva_add_test name)
    cmake_parse_arguments(ARG "" "" "LINK;LABEL" ${ARGN})
    add_executable(${name} ${ARG_UNPARSED_ARGUMENTS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/src"
                                               "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${ARG_LINK} test_support GTest::gtest_main)
    target_compile_options(${name} PRIVATE ${NEZAIVA_TEST_OPTIONS})
    if("nlohmann_json::nlohmann_json" IN_LIST ARG_LINK)
        nezaiva_reuse_precompiled(${name} nezaiva_json_test_headers)
    else()
        nezaiva_reuse_precompiled(${name} nezaiva_test_headers)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 600)
endfunction()
