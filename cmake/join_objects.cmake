# join_objects(RESULT OBJECT...): one object with everything in it, of which only the functions of the
# header are visible. The other names of the library (some of which are the system's own on Windows,
# such as CloseHandle) can then not meet names of the program that links the library. Sets RESULT to
# the object; to the objects as they are where this is not possible: without GNU ld and objcopy.
function(join_objects result)
  if(NOT CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF" OR NOT CMAKE_OBJCOPY)
    set(${result} ${ARGN} PARENT_SCOPE)
    return()
  endif()
  separate_arguments(flags UNIX_COMMAND "${CMAKE_CXX_FLAGS}")
  set(visible ${PROJECT_SOURCE_DIR}/module/typescout.symbols)
  set(joined ${CMAKE_CURRENT_BINARY_DIR}/typescout_joined$<$<BOOL:$<CONFIG>>:_$<CONFIG>>.o)
  add_custom_command(OUTPUT ${joined}
    COMMAND ${CMAKE_CXX_COMPILER} ${flags} -r -nostdlib -fuse-ld=bfd -Wl,--force-group-allocation
      -o ${joined} ${ARGN}
    COMMAND ${CMAKE_OBJCOPY} --keep-global-symbols=${visible} ${joined}
    DEPENDS ${ARGN} ${visible} COMMAND_EXPAND_LISTS VERBATIM)
  set_source_files_properties(${joined} PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)
  set(${result} ${joined} PARENT_SCOPE)
endfunction()
