# SPDX-License-Identifier: MIT
# What every target of the project is built with.

# C++20, warnings, hidden symbols, and one rounding per written operation: the same input gives the same bits on
# every machine only when no multiplication is fused with an addition.
function(qz_configure target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
endfunction()

# One test executable; each of its tests is a test of ctest.
function(qz_add_tests target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_executable(${target} ${arg_SOURCES})
    qz_configure(${target})
    target_link_libraries(${target} PRIVATE ${arg_LINK} GTest::gmock_main)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60)
endfunction()
