# Makes a library of the system be loaded when one of the named functions is first called, not with the program:
# what few users come to shall not slow every start. Each function is named with the size of its arguments on x86.
function(delay_load target library)
  set(base ${PROJECT_BINARY_DIR}/generated/${library})
  list(JOIN ARGN "\n" exports)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    string(REGEX REPLACE "@[0-9]+" "" exports "${exports}")
  endif()
  file(CONFIGURE OUTPUT ${base}.def CONTENT "LIBRARY ${library}.dll\nEXPORTS\n${exports}\n")
  add_custom_command(
    OUTPUT ${base}.a
    COMMAND ${CMAKE_DLLTOOL} --kill-at --input-def ${base}.def --output-delaylib ${base}.a
    DEPENDS ${base}.def
    COMMENT "Making the delayed imports of ${library}"
    VERBATIM)
  add_custom_target(${library}_imports DEPENDS ${base}.a)
  add_dependencies(${target} ${library}_imports)
  target_link_libraries(${target} PUBLIC ${base}.a delayimp)
endfunction()
