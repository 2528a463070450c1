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
endfunction()
