# Builds 64-bit Windows programs on Debian with mingw-w64. CORVENNA_QT is the folder of a Qt built by tools/windows/qt.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CORVENNA_QT)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${CORVENNA_QT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# g++ 12 warns of overlaps within its own library's strings that can't be (its bug 105651).
set(CMAKE_CXX_FLAGS_INIT "-Wno-restrict")
