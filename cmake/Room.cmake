# zeb_precompiled(target): gives a library the headers that nearly every source includes, compiled once for all. The
# sanitizers' presets switch it on; the others show an include that is missing.
option(ZEB_PRECOMPILE "Compile frequent headers once" OFF)
if(ZEB_PRECOMPILE)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/headers.cpp CONTENT "// A source for the headers to belong to.\n")
  add_library(zeb_headers STATIC ${PROJECT_BINARY_DIR}/headers.cpp)
  target_precompile_headers(zeb_headers PRIVATE
    <algorithm> <array> <atomic> <charconv> <chrono> <condition_variable> <functional> <map> <memory> <mutex>
    <optional> <span> <string> <string_view> <thread> <unordered_map> <vector>)
endif()
function(zeb_precompiled target)
  if(ZEB_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM zeb_headers)
  endif()
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
  zeb_precompiled(${target})
endfunction()
