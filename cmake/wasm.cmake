# WebAssembly by Debian's emscripten, with its own exceptions and vectors of two doubles. Its compiler makes no vectors of
# its own out of single numbers: in the chain of the dominant cycle it got that wrong, and the kernels have theirs.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -msimd128 -fno-slp-vectorize")
