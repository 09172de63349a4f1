# SPDX-License-Identifier: MIT
include(${CMAKE_CURRENT_LIST_DIR}/Support.cmake)
run(${CMAKE_COMMAND} --build ${BUILD} --target all_verify_interface_header_sets)
