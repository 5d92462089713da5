# Icons and bitmaps are kept as sources a person can edit and turned into .ico and .bmp files while building.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(PICTURE_SOURCES ${PROJECT_SOURCE_DIR}/resources/pictures)
set(PICTURE_OUTPUT ${PROJECT_BINARY_DIR}/generated/pictures)
set(PICTURE_SCRIPT ${PROJECT_SOURCE_DIR}/tools/make_pictures.py)
file(GLOB_RECURSE PICTURE_FILES CONFIGURE_DEPENDS ${PICTURE_SOURCES}/*)

add_custom_command(
  OUTPUT ${PICTURE_OUTPUT}/made
  BYPRODUCTS ${PICTURE_OUTPUT}/toolbar.h ${PICTURE_OUTPUT}/toolbar.rc
  COMMAND ${Python3_EXECUTABLE} ${PICTURE_SCRIPT} ${PICTURE_SOURCES} ${PICTURE_OUTPUT}
  COMMAND ${CMAKE_COMMAND} -E touch ${PICTURE_OUTPUT}/made
  DEPENDS ${PICTURE_SCRIPT} ${PICTURE_FILES}
  COMMENT "Making the pictures"
  VERBATIM)
add_custom_target(pictures DEPENDS ${PICTURE_OUTPUT}/made)

# Lets the resource script of `target` find the pictures, and builds it again when one changes.
function(use_pictures target)
  add_dependencies(${target} pictures)
  target_include_directories(${target} PRIVATE ${PICTURE_OUTPUT} ${PROJECT_SOURCE_DIR}/resources)
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/resources/snipstore.rc APPEND PROPERTY OBJECT_DEPENDS
    "${PICTURE_OUTPUT}/made;${PROJECT_SOURCE_DIR}/resources/resource.h;${PROJECT_SOURCE_DIR}/resources/snipstore.manifest")
endfunction()
