set(CMAKE_SYSTEM_PROCESSOR i686)
set(triplet i686-linux-gnu)
set(emulator i386)
include("${CMAKE_CURRENT_LIST_DIR}/linux.cmake")
