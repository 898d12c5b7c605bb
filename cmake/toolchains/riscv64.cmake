set(CMAKE_SYSTEM_PROCESSOR riscv64)
set(triplet riscv64-linux-gnu)
set(emulator riscv64)
include("${CMAKE_CURRENT_LIST_DIR}/linux.cmake")
