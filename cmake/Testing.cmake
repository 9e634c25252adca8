include(GoogleTest)

# nezaiva_add_test(NAME SOURCE... [LINK LIBRARY...] [LABEL LABEL...])
# One test program of GoogleTest cases, one CTest entry of the same name.
function(nezaiva_add_test name)
    cmake_parse_arguments(ARG "" "" "LINK;LABEL" ${ARGN})
    add_executable(${name} ${ARG_UNPARSED_ARGUMENTS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/src"
                                               "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gtest_main)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 600)
endfunction()
