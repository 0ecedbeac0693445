# What the toolchains that Debian has for other systems share: the one of `triple`, its compilers' names ending in `variant`.
set(CMAKE_C_COMPILER "${triple}-gcc${variant}")
set(CMAKE_CXX_COMPILER "${triple}-g++${variant}")
set(CMAKE_FIND_ROOT_PATH "/usr/${triple}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
