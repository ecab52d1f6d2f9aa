# Cross build for 64-bit ARM Linux with Debian's cross compiler and the arm64 libraries installed
# beside the machine's own (multiarch): headers in /usr/include, libraries in
# /usr/lib/aarch64-linux-gnu, found through the arm64 pkg-config. Programs the build or ctest
# runs go through qemu-user, with the machine's own arm64 loader and libraries: those are the
# ones the library cache lists, and a loader from another C library build (the cross compiler's,
# under qemu's -L) beside them deadlocks threads.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config CACHE FILEPATH "arm64 pkg-config")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)
