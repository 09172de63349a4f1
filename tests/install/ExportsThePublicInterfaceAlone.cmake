# SPDX-License-Identifier: MIT
# Every symbol that the library exports is on the list, and the other way round. A complete and a base-object
# constructor or destructor have one line.
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)
file(GLOB_RECURSE library ${BUILD}/QZ/*/libQZFoundation.so)
run(${NM} --dynamic --defined-only --demangle --format=posix ${library})
string(REPLACE ";" "," output "${output}")
string(REGEX REPLACE " [A-Za-z] [0-9a-f]+( [0-9a-f]+)?\n" "\n" output "${output}")
string(REPLACE "\n" ";" symbols "${output}")
list(REMOVE_ITEM symbols "")
list(REMOVE_DUPLICATES symbols)
read_list(${CMAKE_CURRENT_LIST_DIR}/symbols.txt expected)
expect_same("The exported symbols" "${symbols}" "${expected}")
