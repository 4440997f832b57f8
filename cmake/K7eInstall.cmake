# The installed tree: library, headers, CMake package, pkg-config file and tool.
include(CMakePackageConfigHelpers)

install(TARGETS k7eCore EXPORT k7eCoreTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${K7E_PUBLIC_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/k7eCore)
if(K7E_TOOLS)
    # The tool finds the library of its own installed tree, wherever that tree is moved.
    set_target_properties(k7e PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    install(TARGETS k7e RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(K7E_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/k7eCore)
install(EXPORT k7eCoreTargets NAMESPACE k7eCore:: DESTINATION ${K7E_CMAKE_DIR})
configure_package_config_file(cmake/k7eCoreConfig.cmake.in k7eCoreConfig.cmake
    INSTALL_DESTINATION ${K7E_CMAKE_DIR})
write_basic_package_version_file(k7eCoreConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/k7eCoreConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/k7eCoreConfigVersion.cmake
    DESTINATION ${K7E_CMAKE_DIR})

file(RELATIVE_PATH K7E_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/k7eCore.pc.in k7eCore.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/k7eCore.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
