# The programs for ARM64 from another Linux machine: Debian's g++-aarch64-linux-gnu. Where qemu-user is installed, CMake
# starts them with it.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
find_program(CMAKE_CROSSCOMPILING_EMULATOR NAMES qemu-aarch64 qemu-aarch64-static)

set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
