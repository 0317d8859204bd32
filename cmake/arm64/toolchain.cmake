# Linux on arm64 from any other machine: Debian's cross compiler, and its user-mode emulator for what is built. Only what
# knows no platform is built so (QUILLMERE_PORTABLE_ONLY): the libraries below the rest are not there for arm64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
# googletest, which is built here, calls itself a project in both.
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
find_program(QUILLMERE_QEMU qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/emulate")
list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}")
