# How every target of the project is compiled: orvex_target(NAME) applies it.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND PROJECT_IS_TOP_LEVEL)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

function(orvex_target name)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  if(MSVC)
    target_compile_options(${name} PRIVATE /W4 /permissive- /utf-8 /fp:precise)
  else()
    # Results are the same bits everywhere: no multiply-add in one rounding, whatever the processor offers.
    target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                           -ffp-contract=off)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # GCC 12 sees overlapping copies in std::string that are not there.
      target_compile_options(${name} PRIVATE -Wno-restrict)
    endif()
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^i[3-6]86$")
      # It would otherwise compute in the extended precision of the x87 unit.
      target_compile_options(${name} PRIVATE -msse2 -mfpmath=sse)
    endif()
    if(MINGW)
      # 64-bit code would store 32-byte vectors aligned on a stack that this target aligns to 16 bytes only.
      target_compile_options(${name} PRIVATE -Wa,-muse-unaligned-vector-move)
    endif()
  endif()
  if(ORVEX_SANITIZE)
    set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(${name} PRIVATE ${sanitizers})
    target_compile_definitions(${name} PRIVATE _GLIBCXX_ASSERTIONS)
    target_link_options(${name} PUBLIC ${sanitizers})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
      # Numbers that change in a conversion or wrap around are defined, and yet none is meant but those of the list.
      target_compile_options(${name} PRIVATE -fsanitize=integer,float-divide-by-zero,local-bounds
                                             -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/sanitizers.ignore)
      # Lets the fuzzers see which code an input reaches.
      target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
  endif()
endfunction()

# orvex_headers(TARGET LIBRARY...): libraries that are headers alone, for another system: this one's serve, but what lies
# beside them in their folder does not.
function(orvex_headers target)
  set(include "${CMAKE_CURRENT_BINARY_DIR}/include")
  file(MAKE_DIRECTORY "${include}")
  foreach(library ${ARGN})
    find_path(${library}_headers ${library} PATHS /usr/include REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    file(CREATE_LINK "${${library}_headers}/${library}" "${include}/${library}" SYMBOLIC)
  endforeach()
  target_include_directories(${target} SYSTEM PRIVATE "${include}")
  target_compile_definitions(${target} PRIVATE FMT_HEADER_ONLY)
endfunction()
