# Debian packages: runtime libraries, development files, tool.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Mezzo authors <authors@mezzo.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_COMPONENTS_ALL Runtime Development Tool)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")

set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libmezzo${PROJECT_VERSION_MAJOR}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION} (shared libraries)
Converts positions in samples to SMPTE timecode, frame counts, clock time,
beats, and bars and beats, and back; names notes.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libmezzo-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libboost-dev (>= 1.74)")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${PROJECT_DESCRIPTION} (development files)
Headers, CMake packages and pkg-config files.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME mezzo)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION sound)
set(CPACK_COMPONENT_TOOL_DEPENDS Runtime)
set(CPACK_COMPONENT_TOOL_DESCRIPTION "${PROJECT_DESCRIPTION} (command-line tool)
Converts positions on an audio timeline, draws rulers and names notes.")

# Each package has the copyright file and the changelog that Debian requires.
set(contact "${CPACK_PACKAGE_CONTACT}")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)  # of SOURCE_DATE_EPOCH, if that is set
configure_file(cmake/copyright.in "${PROJECT_BINARY_DIR}/debian/copyright" @ONLY)
configure_file(cmake/changelog.in "${PROJECT_BINARY_DIR}/debian/changelog" @ONLY)
execute_process(COMMAND gzip -9nkf "${PROJECT_BINARY_DIR}/debian/changelog")
foreach(component Runtime Development Tool)
  string(TOUPPER "${component}" upper)
  install(FILES "${PROJECT_BINARY_DIR}/debian/copyright" "${PROJECT_BINARY_DIR}/debian/changelog.gz"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}"
    COMPONENT "${component}")
endforeach()

set(CPACK_POST_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/FinishPackages.cmake")
include(CPack)
