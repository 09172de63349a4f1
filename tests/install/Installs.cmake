# SPDX-License-Identifier: MIT
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)
file(REMOVE_RECURSE ${PREFIX})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX})
