# SPDX-License-Identifier: MIT
# As a subdirectory and without the media layer, the library needs nothing but the standard library and Highway.
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CMAKE_CURRENT_LIST_DIR}/subdirectory -B ${WORK}
    -D QZ_SOURCE=${SOURCE} -D QZ_MEDIA=OFF -D CMAKE_CXX_COMPILER=${CXX})
run(${CMAKE_COMMAND} --build ${WORK})
run(${WORK}/host)

file(GLOB_RECURSE library ${WORK}/*/libQZFoundation.so.1)
run(${READELF} -d ${library})
string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*" needed "${output}")
foreach(entry IN LISTS needed)
    if(NOT entry MATCHES "\\[(libstdc\\+\\+|libm|libgcc_s|libc|libhwy|ld-linux[^.]*)\\.so")
        message(FATAL_ERROR "The library without media needs ${entry}")
    endif()
endforeach()
