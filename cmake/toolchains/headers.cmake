# The build machine's header-only libraries, without the rest of its headers.
set(headers "${CMAKE_BINARY_DIR}/headers")
file(MAKE_DIRECTORY "${headers}")
foreach(library boost fast_float)
  file(CREATE_LINK "/usr/include/${library}" "${headers}/${library}" SYMBOLIC)
endforeach()
set(Boost_NO_BOOST_CMAKE ON)
set(Boost_INCLUDE_DIR "${headers}")
set(FAST_FLOAT_INCLUDE_DIR "${headers}")
