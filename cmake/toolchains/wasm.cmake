# WebAssembly with Emscripten. Each program is one JavaScript file that Node runs.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CXX_FLAGS_INIT -fexceptions)
set(CMAKE_EXE_LINKER_FLAGS_INIT -sSINGLE_FILE=1)
include("${CMAKE_CURRENT_LIST_DIR}/headers.cmake")
