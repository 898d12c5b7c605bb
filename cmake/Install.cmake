# Headers, libraries, CMake package and pkg-config file.
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Mezzo")

# The installed libraries find each other wherever the prefix is moved.
if(APPLE)
  set_target_properties(Mezzo PROPERTIES INSTALL_RPATH "@loader_path")
else()
  set_target_properties(Mezzo PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

install(TARGETS Mezzo EXPORT MezzoTargets
  LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development)
foreach(folder Utility Debug Module)
  file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.h")
  install(FILES ${headers} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/mezzo/${folder}"
    COMPONENT Development)
endforeach()

install(EXPORT MezzoTargets NAMESPACE Mezzo:: DESTINATION "${package_dir}" COMPONENT Development)
configure_package_config_file(cmake/MezzoConfig.cmake.in "${PROJECT_BINARY_DIR}/MezzoConfig.cmake"
  INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/MezzoConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/MezzoConfig.cmake"
              "${PROJECT_BINARY_DIR}/MezzoConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT Development)

file(RELATIVE_PATH path_to_prefix
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file(cmake/mezzo.pc.in "${PROJECT_BINARY_DIR}/mezzo.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/mezzo.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
  COMPONENT Development)
