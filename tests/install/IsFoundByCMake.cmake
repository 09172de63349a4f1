# SPDX-License-Identifier: MIT
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)
file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CMAKE_CURRENT_LIST_DIR}/package -B ${WORK}
    -D CMAKE_PREFIX_PATH=${PREFIX} -D CMAKE_CXX_COMPILER=${CXX})
run(${CMAKE_COMMAND} --build ${WORK})
run(${WORK}/host)
