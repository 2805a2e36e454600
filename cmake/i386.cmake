# 32-bit little-endian Linux, the library's home: build with -m32 and run the
# tests under qemu-i386 (packages g++-multilib and qemu-user).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT "-m32")
set(CMAKE_CXX_FLAGS_INIT "-m32")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-m32")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-m32")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-m32")
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
find_program(IPACL_QEMU_I386 qemu-i386 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${IPACL_QEMU_I386})
