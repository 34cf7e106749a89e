# Debian's cross compiler for aarch64, whatever its version. CMAKE_FIND_ROOT_PATH names a folder with the target's
# libraries, if they are not among the system's own.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
foreach(version IN ITEMS "" -15 -14 -13 -12)
    list(APPEND c_names aarch64-linux-gnu-gcc${version})
    list(APPEND cxx_names aarch64-linux-gnu-g++${version})
endforeach()
find_program(AARCH64_GCC NAMES ${c_names} REQUIRED)
find_program(AARCH64_GXX NAMES ${cxx_names} REQUIRED)
set(CMAKE_C_COMPILER ${AARCH64_GCC})
set(CMAKE_CXX_COMPILER ${AARCH64_GXX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
