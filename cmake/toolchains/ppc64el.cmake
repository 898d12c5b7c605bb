set(CMAKE_SYSTEM_PROCESSOR ppc64le)
set(triplet powerpc64le-linux-gnu)
set(emulator ppc64le)
include("${CMAKE_CURRENT_LIST_DIR}/linux.cmake")
