include(CheckCXXSymbolExists)

# Compiler options of this project's targets. Consumers do not get them, and neither does the contract
# test, which hosts build.
add_library(mezzo_project_options INTERFACE)
target_compile_features(mezzo_project_options INTERFACE cxx_std_20)
target_compile_options(mezzo_project_options INTERFACE
  # By default, compilers fuse multiplications with additions where the processor can, as on Arm. That
  # changes last digits.
  -ffp-contract=off
  -fvisibility=hidden -fvisibility-inlines-hidden
  # Assertion reports name files relative to the root, and plinth's headers relative to their
  # folder.
  "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/="
  "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/plinth/include/plinth/=")
check_cxx_symbol_exists(__i386__ cstddef MEZZO_TARGETS_32_BIT_X86)
if(MEZZO_TARGETS_32_BIT_X86)
  # The x87 unit computes in extended precision and rounds again when it stores.
  target_compile_options(mezzo_project_options INTERFACE -msse2 -mfpmath=sse)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL Linux)
  target_compile_options(mezzo_project_options INTERFACE
    -fno-semantic-interposition
    $<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
  target_link_options(mezzo_project_options INTERFACE LINKER:-z,relro,-z,now)
endif()
if(PROJECT_IS_TOP_LEVEL)
  target_compile_options(mezzo_project_options INTERFACE
    -Wall -Wextra -Wpedantic -Werror
    $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wshorten-64-to-32>
    -Wconversion -Wsign-conversion -Wshadow -Wdouble-promotion -Wold-style-cast -Wcast-align
    -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wimplicit-fallthrough)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    # With sanitizers, GCC wrongly reports uninitialised reads in Boost.Signals2.
    target_compile_options(mezzo_project_options INTERFACE -Wno-maybe-uninitialized)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 wrongly reports overlapping copies in concatenations of std::string.
    target_compile_options(mezzo_project_options INTERFACE -Wno-restrict)
  endif()
endif()
