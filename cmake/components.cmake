# A component is one folder and one static library. Its headers are found under the folder's own name, through a link
# that only the component itself and those that use it have on their include path: a wrong include does not build.
# What it exports to Objective-C is built for macOS only.
#
#   wendle_component(NAME client SOURCES a.cpp b.cpp OBJECTIVE_C C.mm USES platform logging)
function(wendle_component)
  cmake_parse_arguments(COMPONENT "" "NAME" "SOURCES;OBJECTIVE_C;USES" ${ARGN})
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE directory)
  set(view ${PROJECT_BINARY_DIR}/components/${COMPONENT_NAME})
  cmake_path(GET directory PARENT_PATH parent)
  file(MAKE_DIRECTORY ${view}/${parent})
  if(NOT EXISTS ${view}/${directory})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${view}/${directory} SYMBOLIC)
  endif()

  add_library(wendle_${COMPONENT_NAME} STATIC ${COMPONENT_SOURCES})
  if(APPLE)
    target_sources(wendle_${COMPONENT_NAME} PRIVATE ${COMPONENT_OBJECTIVE_C})
  endif()
  target_include_directories(wendle_${COMPONENT_NAME} PUBLIC ${view})
  list(TRANSFORM COMPONENT_USES PREPEND wendle_)
  target_link_libraries(wendle_${COMPONENT_NAME} PUBLIC ${COMPONENT_USES} PRIVATE wendle_build_rules)
endfunction()
