# SPDX-License-Identifier: MIT
# Every installed file is on the manifest, and the other way round.
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)
file(GLOB_RECURSE files RELATIVE ${PREFIX} ${PREFIX}/*)
list(TRANSFORM files REPLACE "^${LIBDIR}/" "lib/")
list(FILTER files EXCLUDE REGEX "QZFoundationTargets-[a-z]+\\.cmake$")   # named after the build type
read_list(${CMAKE_CURRENT_LIST_DIR}/manifest.txt expected)
expect_same("The installed files" "${files}" "${expected}")
