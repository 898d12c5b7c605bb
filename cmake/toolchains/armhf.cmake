set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(triplet arm-linux-gnueabihf)
set(emulator arm)
include("${CMAKE_CURRENT_LIST_DIR}/linux.cmake")
