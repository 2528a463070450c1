# Compiler settings that hold for every target, and the options that the presets set.
option(ZEB_TESTS "Build the tests" ON)
option(ZEB_BENCH "Build the benchmarks" OFF)
set(ZEB_SANITIZE "" CACHE STRING "Sanitizers to build with; with address and clang, fuzzers are built too")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_SCAN_FOR_MODULES OFF)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
  # What is compiled with a precompiled header is cached too (given sloppiness=pch_defines,time_macros).
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options(-fpch-preprocess)
  endif()
endif()

# The presets make them errors: another compiler, with warnings of its own, can build a package without.
add_compile_options(-Wall -Wextra -Wconversion -Wshadow)
# A unique symbol would keep the plug-in in the process after it was unloaded.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  add_compile_options(-fno-gnu-unique)
  # GCC 12 sees overflows inside its own std::vector when it optimizes.
  add_compile_options(-Wno-stringop-overflow)
  # With a preset: a tenth of the time goes into garbage that a machine with a GiB for each compiler can leave.
  if(CMAKE_COMPILE_WARNING_AS_ERROR)
    add_compile_options(--param=ggc-min-expand=1000 --param=ggc-min-heapsize=1000000)
  endif()
endif()

if(ZEB_SANITIZE)
  add_compile_options(-fsanitize=${ZEB_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZEB_SANITIZE})
  if(ZEB_SANITIZE MATCHES "address|thread")
    string(TOUPPER ${CMAKE_MATCH_0} sanitizer)
    add_compile_definitions(ZEB_SANITIZE_${sanitizer})
  endif()
  # What GCC weaves into library code upsets its flow warnings.
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options(-Wno-maybe-uninitialized -Wno-tsan)
  endif()
endif()
