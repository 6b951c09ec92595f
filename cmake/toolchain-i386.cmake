# 32-bit x86 build on an x86-64 host; binaries run under qemu-i386.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
# Tests and tools do their floating point in SSE too: x87 excess precision
# would make the oracle's own roundings (float(x), nextafter) unreliable.
set(CMAKE_C_FLAGS_INIT "-m32 -march=prescott -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-m32 -march=prescott -mfpmath=sse")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-m32")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-m32")
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
set(CMAKE_FIND_ROOT_PATH /usr/lib/i386-linux-gnu /usr/lib32)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE NEVER)
set(CMAKE_LIBRARY_PATH /usr/lib/i386-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-i386)
