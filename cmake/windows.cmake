# The 32-bit Windows target: MinGW-w64 with POSIX threads, Wine to run what it makes.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The prefix belongs to the build, and Wine's own messages stay out of the tests' output.
# The locale lets Wine give files any name.
set(CMAKE_CROSSCOMPILING_EMULATOR env LC_ALL=C.UTF-8 WINEDEBUG=-all WINEPREFIX=${CMAKE_BINARY_DIR}/wine wine)

# The system's walk of a 32-bit stack goes by the frame pointers.
set(CMAKE_C_FLAGS_INIT "-fno-omit-frame-pointer")
set(CMAKE_CXX_FLAGS_INIT "-fno-omit-frame-pointer")

# Nothing of the compiler's runtime has to lie beside the programs.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static")
endforeach()
