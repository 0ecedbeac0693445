# WebAssembly by Debian's emscripten, with its own exceptions and vectors of two doubles.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -msimd128")
