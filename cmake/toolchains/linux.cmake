# What the toolchain files of this folder share: Linux on another processor, with Debian's cross
# compiler and emulator. They set the triplet and the emulator; with -DCMAKE_CXX_COMPILER=clang++
# Clang uses the cross compiler's libraries.
set(CMAKE_SYSTEM_NAME Linux)
if(NOT CMAKE_CXX_COMPILER)
  set(CMAKE_CXX_COMPILER "${triplet}-g++")
endif()
set(CMAKE_C_COMPILER "${triplet}-gcc")
set(CMAKE_CXX_COMPILER_TARGET "${triplet}")
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-${emulator}-static" -L "/usr/${triplet}")

# The build machine's header-only libraries, without the rest of its headers.
set(headers "${CMAKE_BINARY_DIR}/headers")
file(MAKE_DIRECTORY "${headers}")
foreach(library boost fast_float)
  file(CREATE_LINK "/usr/include/${library}" "${headers}/${library}" SYMBOLIC)
endforeach()
set(Boost_NO_BOOST_CMAKE ON)
set(Boost_INCLUDE_DIR "${headers}")
set(FAST_FLOAT_INCLUDE_DIR "${headers}")
