# Every folder is a room: one static library with its own include folder. A room sees exactly the
# rooms it links, so an include in the wrong direction does not compile.

add_library(ventaro_options INTERFACE)
target_compile_options(ventaro_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees std::string's own buffer overflow in texts joined from literals (its bug 105651);
  # clang and the sanitizers look at the same code.
  target_compile_options(ventaro_options INTERFACE -Wno-array-bounds -Wno-restrict)
endif()
if(VENTARO_SANITIZE)
  # Without vptr, which opens a pipe to look at an object: tests leave programs without descriptors.
  set(sanitize -fsanitize=${VENTARO_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
               -fno-omit-frame-pointer)
  add_compile_options(${sanitize})
  add_link_options(${sanitize})
endif()
if(VENTARO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# ventaro_precompile(TARGET [HEADER ...]): most of the time to compile a file goes into reading the
# same headers as its neighbours do. None of them is one of ours, so what our files include of each
# other stays as it is written. Where many files are one unit anyway there is nothing to gain.
function(ventaro_precompile target)
  if(NOT CMAKE_UNITY_BUILD)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <chrono> <filesystem> <functional> <map> <memory> <optional> <string> <vector> ${ARGN})
  endif()
endfunction()

# ventaro_room(NAME SOURCES ... LINKS ... [PRIVATE_LINKS ...] [PRECOMPILE HEADER ...])
function(ventaro_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINKS;PRIVATE_LINKS;PRECOMPILE" ${ARGN})
  add_library(${name} STATIC ${ROOM_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ROOM_LINKS} PRIVATE ventaro_options ${ROOM_PRIVATE_LINKS})
  list(LENGTH ROOM_SOURCES count)
  if(count GREATER 3)
    ventaro_precompile(${name} ${ROOM_PRECOMPILE})
  endif()
endfunction()

# ventaro_program(NAME LINKS ...): main.cpp of this folder, the only file outside a library.
function(ventaro_program name)
  cmake_parse_arguments(PROGRAM "" "" "LINKS" ${ARGN})
  add_executable(${name} main.cpp)
  target_link_libraries(${name} PRIVATE ventaro_options ${PROGRAM_LINKS})
  target_compile_definitions(${name} PRIVATE VENTARO_VERSION="${PROJECT_VERSION}")
endfunction()
