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

# The same for tests, which need not be fast: with the sanitizers' checks most of a run is their compilation.
function(qz_configure_test target)
    qz_configure(${target})
    if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        target_compile_options(${target} PRIVATE -O0)
    endif()
endfunction()

# One test executable; each of its tests is a test of ctest. ON_EVERY_TARGET runs it whole on each instruction set,
# too: one more test of ctest for each, skipped on a machine that lacks it.
function(qz_add_tests target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "ON_EVERY_TARGET" "" "SOURCES;LINK")
    add_executable(${target} ${arg_SOURCES})
    qz_configure_test(${target})
    target_link_libraries(${target} PRIVATE
        ${arg_LINK} $<IF:$<BOOL:${arg_ON_EVERY_TARGET}>,QZTargetMain,GTest::gmock_main>)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    # A compiler cache saves more, and does not take files that use precompiled headers.
    if(QZ_PRECOMPILED_HEADERS AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
        target_precompile_headers(${target} REUSE_FROM TestHeaders)
    endif()
    gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60)
    if(arg_ON_EVERY_TARGET)
        foreach(name IN LISTS QZ_TEST_TARGETS)
            add_test(NAME ${target}.On${name} COMMAND ${target} --target=${name})
            set_tests_properties(${target}.On${name} PROPERTIES SKIP_RETURN_CODE 77)
        endforeach()
    endif()
endfunction()
