set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triple x86_64-w64-mingw32)
# The compilers with the standard mutexes, which GoogleTest needs.
set(variant -posix)
include("${CMAKE_CURRENT_LIST_DIR}/cross.cmake")
set(CMAKE_RC_COMPILER ${triple}-windres)
