# The Windows programs from a Linux machine: Debian's g++-mingw-w64-x86-64, of which the variant with POSIX threads has
# std::thread. Where wine is installed, CMake starts them with it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static) # the libraries of this compiler are on no Windows machine
find_program(CMAKE_CROSSCOMPILING_EMULATOR wine)

# Libraries that are headers only serve every system, once they stand apart from the other headers of this machine.
set(headers ${CMAKE_BINARY_DIR}/headers)
foreach(directory include/CLI include/nlohmann share/cmake/CLI11 share/cmake/nlohmann_json)
  if(EXISTS /usr/${directory})
    get_filename_component(parent ${headers}/${directory} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    file(CREATE_LINK /usr/${directory} ${headers}/${directory} SYMBOLIC)
  endif()
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${headers})
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
