# SPDX-License-Identifier: MIT
include(${CMAKE_CURRENT_LIST_DIR}/QZFoundationTargets.cmake)
