# SPDX-License-Identifier: MIT
# What `cmake --install` lays down besides the targets: the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QZFoundation)

install(TARGETS QZMath QZFoundation EXPORT QZFoundationTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(TARGET qz)
    set_target_properties(qz PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    install(TARGETS qz RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(EXPORT QZFoundationTargets NAMESPACE QZ:: DESTINATION ${package_dir})

write_basic_package_version_file(QZFoundationConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
        ${PROJECT_SOURCE_DIR}/cmake/QZFoundationConfig.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/QZFoundationConfigVersion.cmake
    DESTINATION ${package_dir})

file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/QZFoundation.pc.in QZFoundation.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QZFoundation.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
