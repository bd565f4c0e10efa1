# One language level and one set of warnings for every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release or RelWithDebInfo" FORCE)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wformat=2)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlaps in optimised string concatenations of its own library (GCC bug 105651).
  add_compile_options(-Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # The log's formats come through functions that check them at their callers.
  add_compile_options(-Wno-format-nonliteral)
endif()
# __FILE__ tells the place in the tree, not on the machine that built it.
add_compile_options("-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=")

if(HORNBEAM_SANITIZE)
  add_compile_options(-fsanitize=${HORNBEAM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  add_link_options(-fsanitize=${HORNBEAM_SANITIZE})
  # The thread sanitizer doesn't see Boost.Asio's fences; what they order is behind its mutexes as well.
  if(HORNBEAM_SANITIZE MATCHES "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-tsan)
  endif()
endif()
