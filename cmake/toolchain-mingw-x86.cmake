# Windows x86 through MinGW-w64; see the x64 toolchain for the choices.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CELDO_WIDL i686-w64-mingw32-widl)
set(CELDO_WIDL_TARGET --win32)
set(CELDO_WINE_ARCH x86)
# SSE2 arithmetic gives doubles the same rounding as on x64 (x87's 80-bit intermediates would
# change results such as Round(2.675, 2)); callbacks from system code may arrive with a 4-byte
# aligned stack, which SSE spills must not assume.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
