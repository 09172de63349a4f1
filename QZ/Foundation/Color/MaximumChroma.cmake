# SPDX-License-Identifier: MIT
# The precomputed table of maximum chromas: a small program, from the same formulas as the library, writes it as C++.
set(generator_sources GenerateMaximumChroma.cpp ElementaryAngle.cpp ElementaryPower.cpp)
set(generated ${CMAKE_CURRENT_BINARY_DIR}/MaximumChromaTable.cpp)

if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    # The target's programs do not run here, so the program is built with this machine's own compiler.
    find_program(QZ_HOST_CXX NAMES c++ g++ clang++ NO_CMAKE_FIND_ROOT_PATH REQUIRED
        DOC "C++20 compiler for programs that run during the build")
    set(generator ${CMAKE_CURRENT_BINARY_DIR}/GenerateMaximumChroma)
    add_custom_command(OUTPUT ${generator}
        COMMAND ${QZ_HOST_CXX} -std=c++20 -O2 -ffp-contract=off -I ${PROJECT_SOURCE_DIR}
            ${generator_sources} -o ${generator}
        WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
        DEPENDS ${generator_sources} Formulas/MaximumChroma.h Formulas/HSLuv.h ElementaryDouble.h
            ElementaryTables.h DoubleDouble.h ${PROJECT_SOURCE_DIR}/QZ/Math/Detail/DoubleDouble.h
            ${PROJECT_SOURCE_DIR}/QZ/Math/Detail/Elementary.h ${PROJECT_SOURCE_DIR}/QZ/Math/Detail/ElementaryTables.h
        VERBATIM)
else()
    add_executable(GenerateMaximumChroma ${generator_sources})
    qz_configure(GenerateMaximumChroma)
    target_link_libraries(GenerateMaximumChroma PRIVATE QZ::Math)
    target_include_directories(GenerateMaximumChroma PRIVATE ${PROJECT_SOURCE_DIR})
    set(generator GenerateMaximumChroma)
endif()

add_custom_command(OUTPUT ${generated}
    COMMAND ${generator} ${generated}
    DEPENDS ${generator}
    COMMENT "Writing the table of maximum chromas"
    VERBATIM)
# The library belongs to another folder, where the command above is not known: the target stands for it.
add_custom_target(QZMaximumChromaTable DEPENDS ${generated})
add_dependencies(QZFoundationObjects QZMaximumChromaTable)
set_source_files_properties(${generated} TARGET_DIRECTORY QZFoundationObjects PROPERTIES GENERATED ON)
target_sources(QZFoundationObjects PRIVATE ${generated})
