# Cross-building for arm64 (Raspberry Pi OS 64-bit, Mobian) on an amd64 Debian 12 with its
# multiarch packages: Debian's cross compilers, the :arm64 libraries, and the build machine's own
# Qt tools (moc, rcc, qmlcachegen, lrelease), which Qt finds through QT_HOST_PATH. Programs built
# here run through qemu-user-static, so CTest and test discovery work as they do natively.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config CACHE FILEPATH "")
set(QT_HOST_PATH /usr CACHE PATH "")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "")
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/qemu-aarch64-static)
# Debian's GeographicLib -dev package cannot be installed for two architectures at once, so
# this links the arm64 library by a pkg-config file of its own, whichever -dev is installed;
# the headers are the same on every architecture.
set(_arm64_lib /usr/lib/aarch64-linux-gnu)
if(EXISTS ${_arm64_lib}/libGeographicLib.so.23)
    # Made once, in the build tree; the checks CMake compiles on the way read this file again
    # from trees of their own.
    if(NOT DEFINED ENV{VELTOR_ARM64_GEOGRAPHICLIB})
        set(ENV{VELTOR_ARM64_GEOGRAPHICLIB} ${CMAKE_BINARY_DIR}/arm64-geographiclib)
    endif()
    set(_geographiclib $ENV{VELTOR_ARM64_GEOGRAPHICLIB})
    file(MAKE_DIRECTORY ${_geographiclib})
    file(CREATE_LINK ${_arm64_lib}/libGeographicLib.so.23 ${_geographiclib}/libGeographicLib.so
         SYMBOLIC)
    file(WRITE ${_geographiclib}/geographiclib.pc
         "Name: GeographicLib\nDescription: geodesics\nVersion: 2.1.2\n"
         "Libs: -L${_geographiclib} -lGeographicLib\nCflags:\n")
    set(ENV{PKG_CONFIG_PATH} ${_geographiclib})
endif()
