# Language level, warnings, sanitizers, linker and compiler cache: the same for every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

# One code model for programs and shared objects alike: a precompiled header serves only one.
add_compile_options(-fPIC -pthread)
add_link_options(-pthread)
# clang makes symmetric transfer between coroutines a tail call only with this below -O2.
add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wshadow -Wno-c99-designator
                    -Wno-missing-field-initializers -foptimize-sibling-calls
                    -fno-omit-frame-pointer -fstack-protector-strong)
# Archives stay small and two clones can share compiler cache entries.
add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.)
add_link_options(-fuse-ld=mold -Wl,--as-needed)

if(ORVEL_SANITIZE)
  # Without the check of vtables: the engine's libraries, built without run-time types, take our
  # copies of the standard library's templates for theirs, and would be found at fault.
  add_compile_options(-fsanitize=${ORVEL_SANITIZE} -fno-sanitize-recover=all -fno-sanitize=vptr)
  add_link_options(-fsanitize=${ORVEL_SANITIZE})
endif()
if(ORVEL_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(ORVEL_CCACHE ccache)
if(ORVEL_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${CMAKE_SOURCE_DIR}/cmake/ccache-launcher)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_SOURCE_DIR}/cmake/ccache-launcher)
endif()
