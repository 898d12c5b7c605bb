set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triplet aarch64-linux-gnu)
set(emulator aarch64)
include("${CMAKE_CURRENT_LIST_DIR}/linux.cmake")
