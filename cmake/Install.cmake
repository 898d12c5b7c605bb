# mezzo_install(LIBRARY): installs a library of the current project with its CMake package and
# pkg-config file. Their templates are in the project's cmake folder.
function(mezzo_install library)
  string(TOLOWER "${library}" name)
  set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/${library}")
  set(config "${PROJECT_BINARY_DIR}/${library}Config.cmake")
  set(version "${PROJECT_BINARY_DIR}/${library}ConfigVersion.cmake")
  set(pkg_config "${PROJECT_BINARY_DIR}/${name}.pc")

  install(TARGETS ${library} EXPORT ${library}Targets
    LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development)
  install(EXPORT ${library}Targets NAMESPACE ${library}:: DESTINATION "${package_dir}"
    COMPONENT Development)
  configure_package_config_file("cmake/${library}Config.cmake.in" "${config}"
    INSTALL_DESTINATION "${package_dir}")
  write_basic_package_version_file("${version}" COMPATIBILITY SameMajorVersion)
  install(FILES "${config}" "${version}" DESTINATION "${package_dir}" COMPONENT Development)

  file(RELATIVE_PATH path_to_prefix
    "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
  configure_file("cmake/${name}.pc.in" "${pkg_config}" @ONLY)
  install(FILES "${pkg_config}" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT Development)
endfunction()
