# Debian's cross compiler and QEMU, for Linux on other processors. The including toolchain file sets
# the triplet and the emulator. With -DCMAKE_CXX_COMPILER=clang++, Clang uses the libraries of the
# cross compiler.
set(CMAKE_SYSTEM_NAME Linux)
if(NOT CMAKE_CXX_COMPILER)
  set(CMAKE_CXX_COMPILER "${triplet}-g++")
endif()
set(CMAKE_C_COMPILER "${triplet}-gcc")
set(CMAKE_CXX_COMPILER_TARGET "${triplet}")
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-${emulator}-static" -L "/usr/${triplet}")

include("${CMAKE_CURRENT_LIST_DIR}/headers.cmake")
