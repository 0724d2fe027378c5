# What is installed, and the Debian packages made of it.
#
# The wider builds stand under glibc-hwcaps/ beside the baseline: the dynamic loader picks the best one for the processor
# by itself, without start-up code in the library.
include(CMakePackageConfigHelpers)

set(vornsr_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vornsr)

install(TARGETS vornsr EXPORT vornsr
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
foreach(processor IN LISTS VORNSR_PROCESSORS)
    if(NOT processor STREQUAL m7)
        install(TARGETS vornsr-${processor}
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/glibc-hwcaps/${processor} COMPONENT runtime NAMELINK_SKIP)
    endif()
endforeach()
if(NOT VORNSR_PROGRAMS)  # the program of another build belongs to that build's installation
    install(TARGETS vornsr-verify RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
endif()
install(FILES verify/digests.txt DESTINATION ${CMAKE_INSTALL_DATADIR}/vornsr COMPONENT runtime OPTIONAL)
install(FILES LICENSE README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)

install(TARGETS vornsr-static EXPORT vornsr ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development FILES_MATCHING PATTERN "*.h")
install(EXPORT vornsr NAMESPACE vornsr:: FILE vornsrTargets.cmake DESTINATION ${vornsr_cmake_dir} COMPONENT development)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/vornsrConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/vornsrConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/vornsrConfigVersion.cmake
    DESTINATION ${vornsr_cmake_dir} COMPONENT development)
configure_file(cmake/vornsr.pc.in vornsr.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vornsr.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGE_VENDOR "The vornsr developers")
set(CPACK_PACKAGE_CONTACT "The vornsr developers <vornsr@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libvornsrm7-5.1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvornsr-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libvornsrm7-5.1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "Primitives for speech recognition, the same bits on every processor\n The shared library, for any x86-64 processor and for the wider ones, and vornsr-verify.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Primitives for speech recognition, development files\n Headers, the static library, pkg-config and CMake files.")
include(CPack)
