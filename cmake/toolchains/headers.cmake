# Makes a prefix with the build machine's header-only libraries, without its other headers.
set(headers "${CMAKE_BINARY_DIR}/headers")
file(MAKE_DIRECTORY "${headers}/include" "${headers}/share/cmake")
foreach(part include/boost include/fast_float include/CLI include/nlohmann
             share/cmake/CLI11 share/cmake/nlohmann_json)
  file(CREATE_LINK "/usr/${part}" "${headers}/${part}" SYMBOLIC)
endforeach()
set(Boost_NO_BOOST_CMAKE ON)
set(Boost_INCLUDE_DIR "${headers}/include")
set(FAST_FLOAT_INCLUDE_DIR "${headers}/include")
set(CLI11_DIR "${headers}/share/cmake/CLI11")
set(nlohmann_json_DIR "${headers}/share/cmake/nlohmann_json")
