# Makes a library of the system be loaded when one of the named functions is first called, not with the program:
# what few users come to shall not slow every start. On x86 it is loaded with the program: there what dlltool makes
# for it jumps to address 0.
function(delay_load target library)
  if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
    target_link_libraries(${target} PUBLIC ${library})
    return()
  endif()
  set(directory ${PROJECT_BINARY_DIR}/generated)
  list(JOIN ARGN "\n" exports)
  file(CONFIGURE OUTPUT ${directory}/${library}.def CONTENT "LIBRARY ${library}.dll\nEXPORTS\n${exports}\n")
  add_custom_command(
    OUTPUT ${directory}/${library}.a
    COMMAND ${CMAKE_DLLTOOL} --temp-prefix ${library} --input-def ${library}.def --output-delaylib ${library}.a
    WORKING_DIRECTORY ${directory}
    DEPENDS ${directory}/${library}.def
    COMMENT "Making the delayed imports of ${library}"
    VERBATIM)
  add_custom_target(${library}_imports DEPENDS ${directory}/${library}.a)
  add_dependencies(${target} ${library}_imports)
  target_link_libraries(${target} PUBLIC ${directory}/${library}.a delayimp)
endfunction()
