# Toolchain file: 64-bit Windows, built on Debian with MinGW-w64 and run by Wine. Debian's compiler moves vector registers
# to and from memory as if it were unaligned; others may crash in AVX code, for which Windows' stack is not aligned (GCC
# bug 54412).

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)  # std::thread needs the variant with POSIX threads
set(CMAKE_RC_COMPILER ${triplet}-windres)

# The runtime of compiler and C++ library goes into every DLL and program; -static-libgcc and -static-libstdc++ alone
# would leave the thread library outside.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)

# Packages for Windows that lie elsewhere: -DCMAKE_FIND_ROOT_PATH=<their prefix>.
list(APPEND CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Packages that are headers alone serve Windows as they are; GoogleTest is built from its sources.
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/mingw)
set(ORVANDEL_STB_INCLUDE_DIR /usr/include/stb CACHE PATH "Folder of stb_image.h")

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/mingw/wine ${CMAKE_BINARY_DIR}/wine)
