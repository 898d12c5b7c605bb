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

include("${CMAKE_CURRENT_LIST_DIR}/headers.cmake")
