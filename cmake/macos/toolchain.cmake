# Compiles for macOS 14.4 on arm64 without a Mac: to object files, which nothing here can link or run.
# The system's headers are our own stand-ins, platform/macos/declarations/, or those of the SDK that QUILLMERE_MACOS_SDK
# names. scripts/check-macos is the one who asks for this.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
find_program(QUILLMERE_CLANG clang++-19 REQUIRED)
set(CMAKE_CXX_COMPILER "${QUILLMERE_CLANG}")
set(CMAKE_OBJCXX_COMPILER "${QUILLMERE_CLANG}")
set(CMAKE_CXX_COMPILER_TARGET arm64-apple-macos14.4)
set(CMAKE_OBJCXX_COMPILER_TARGET arm64-apple-macos14.4)

# No linker: what is tried is compiled, libraries are bundles of objects, and the tools that only a linked program needs
# do nothing.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_AR ar)
set(CMAKE_RANLIB true)
set(CMAKE_INSTALL_NAME_TOOL /bin/true)
set(QUILLMERE_COMPILE_ONLY ON)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUILLMERE_MACOS_SDK)
set(QUILLMERE_MACOS_SDK "" CACHE PATH "An SDK of macOS; empty for the stand-ins")
if(QUILLMERE_MACOS_SDK)
  set(CMAKE_OSX_SYSROOT "${QUILLMERE_MACOS_SDK}")
  set(quillmere_system "")
else()
  set(CMAKE_OSX_SYSROOT "")
  set(declarations "${CMAKE_CURRENT_LIST_DIR}/../../platform/macos/declarations")
  cmake_path(NORMAL_PATH declarations)
  # Nothing of this machine's own: neither its C library nor what else lies in /usr/include.
  string(JOIN " " quillmere_system -nostdlibinc -nostdinc++
    "-isystem /usr/lib/llvm-19/include/c++/v1"
    "-isystem ${declarations}/libc"
    "-isystem ${declarations}/frameworks")
endif()
set(CMAKE_CXX_FLAGS_INIT "${quillmere_system}")
set(CMAKE_OBJCXX_FLAGS_INIT "${quillmere_system}")
# What a package names as its folder is left out of the search; cmake/macos/Find*.cmake hand the libraries out singly.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE NEVER)
list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}")
