# zeb_compiled(target): gives a library of this folder the headers that nearly every source includes, compiled once for
# all, and has its sources compiled several at a time (scripts/batches). What is developed and what is analyzed is
# compiled by itself, which shows an include that is missing.
option(ZEB_TOGETHER "Compile frequent headers once, and sources several at a time" OFF)
if(ZEB_TOGETHER)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/headers.cpp CONTENT "// A source for the headers to belong to.\n")
  add_library(zeb_headers STATIC ${PROJECT_BINARY_DIR}/headers.cpp)
  target_precompile_headers(zeb_headers PRIVATE
    <algorithm> <array> <atomic> <charconv> <chrono> <condition_variable> <functional> <map> <memory> <mutex>
    <optional> <span> <string> <string_view> <thread> <unordered_map> <vector>)
endif()
function(zeb_compiled target)
  if(NOT ZEB_TOGETHER)
    return()
  endif()
  target_precompile_headers(${target} REUSE_FROM zeb_headers)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "^[^/$].*[.]cpp$")  # none that is generated
  foreach(source ${sources})
    get_source_file_property(apart ${source} SKIP_UNITY_BUILD_INCLUSION)
    if(apart)
      list(REMOVE_ITEM sources ${source})
    endif()
  endforeach()
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/batches ${sources}
    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} OUTPUT_VARIABLE batches COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+" batches "${batches}")
  foreach(batch ${batches})
    string(REPLACE " " ";" batch "${batch}")
    list(GET batch 0 first)
    string(MAKE_C_IDENTIFIER ${first} name)
    set_source_files_properties(${batch} PROPERTIES UNITY_GROUP ${name})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)  # a source is an included file then
  endif()
  # Which sources bear each other may be another matter after a change.
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources} ${PROJECT_SOURCE_DIR}/scripts/batches)
endfunction()

# zeb_room(target a.cpp ...): the library of a folder. Its headers are found, by the folder's path, by those alone that
# link the library, so that an include against the arrows does not compile. The path begins in ZEB_ROOM_BASE.
set(ZEB_ROOM_BASE ${PROJECT_SOURCE_DIR})
function(zeb_room target)
  add_library(${target} STATIC ${ARGN})
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${ZEB_ROOM_BASE} OUTPUT_VARIABLE folder)
  cmake_path(GET folder PARENT_PATH parent)
  set(root ${PROJECT_BINARY_DIR}/rooms/${target})
  file(MAKE_DIRECTORY ${root}/${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${folder} SYMBOLIC)
  target_include_directories(${target} PUBLIC ${root})
  zeb_compiled(${target})
endfunction()
