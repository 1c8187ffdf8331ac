# A room is one folder and one static library. Its headers are found under the folder's own name, through a link
# that only the room itself and the rooms that use it have on their include path: a wrong include does not build.
# What it exports to Objective-C is built for macOS only.
#
#   wendle_room(NAME client SOURCES a.cpp b.cpp OBJECTIVE_C C.mm USES platform logging)
function(wendle_room)
  cmake_parse_arguments(ROOM "" "NAME" "SOURCES;OBJECTIVE_C;USES" ${ARGN})
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE folder)
  set(view ${PROJECT_BINARY_DIR}/rooms/${ROOM_NAME})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${view}/${parent})
  if(NOT EXISTS ${view}/${folder})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${view}/${folder} SYMBOLIC)
  endif()

  add_library(wendle_${ROOM_NAME} STATIC ${ROOM_SOURCES})
  if(APPLE)
    target_sources(wendle_${ROOM_NAME} PRIVATE ${ROOM_OBJECTIVE_C})
  endif()
  target_include_directories(wendle_${ROOM_NAME} PUBLIC ${view})
  list(TRANSFORM ROOM_USES PREPEND wendle_)
  target_link_libraries(wendle_${ROOM_NAME} PUBLIC ${ROOM_USES} PRIVATE wendle_build_rules)
endfunction()
