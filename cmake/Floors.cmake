# Helpers that declare a floor of the house: a static library made of every source of its folder and its rooms.
#
# Sources are globbed with CONFIGURE_DEPENDS: adding a file to a folder is all it takes to build it.

add_library(orvel-options INTERFACE)
target_include_directories(orvel-options INTERFACE ${CMAKE_SOURCE_DIR})

# orvel_sources(<variable> [ROOMS <folder>...])
# Collects the .cpp and .c files of the current folder and of its rooms, which are folders below it.
function(orvel_sources variable)
  cmake_parse_arguments(ARG "" "" "ROOMS" ${ARGN})
  set(patterns "*.cpp" "*.c")
  foreach(folder IN LISTS ARG_ROOMS)
    list(APPEND patterns "${folder}/*.cpp" "${folder}/*.c")
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${patterns})
  set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# orvel_precompile(<target> core|gtk|test): use one of the shared precompiled headers.
# core: standard library and fmt; gtk: core and the toolkit; test: core and the test library.
function(orvel_precompile target kind)
  if(NOT TARGET orvel-pch-${kind})
    file(WRITE ${CMAKE_BINARY_DIR}/pch-${kind}.cpp "")
    add_library(orvel-pch-${kind} STATIC ${CMAKE_BINARY_DIR}/pch-${kind}.cpp)
    target_link_libraries(orvel-pch-${kind} PRIVATE orvel-options fmt::fmt tl::expected)
    if(kind STREQUAL gtk)
      target_link_libraries(orvel-pch-${kind} PRIVATE PkgConfig::GTK)
    elseif(kind STREQUAL test)
      target_link_libraries(orvel-pch-${kind} PRIVATE GTest::gmock)
    endif()
    target_compile_options(orvel-pch-${kind} PRIVATE -Xclang -fno-pch-timestamp)
    target_precompile_headers(orvel-pch-${kind} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/pch-${kind}.h)
  endif()
  target_compile_options(${target} PRIVATE -Xclang -fno-pch-timestamp)
  target_precompile_headers(${target} REUSE_FROM orvel-pch-${kind})
endfunction()

# orvel_floor(<name> [ROOMS <folder>...] [LINK <target>...] [PRECOMPILE core|gtk])
function(orvel_floor name)
  cmake_parse_arguments(ARG "" "PRECOMPILE" "ROOMS;LINK" ${ARGN})
  orvel_sources(sources ROOMS ${ARG_ROOMS})
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC orvel-options ${ARG_LINK})
  if(NOT ARG_PRECOMPILE)
    set(ARG_PRECOMPILE core)
  endif()
  orvel_precompile(${name} ${ARG_PRECOMPILE})
endfunction()
