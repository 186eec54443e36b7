# The machine-dependent half on Windows, and how its module is made.
add_library(typescout_host_native STATIC
  host/windows/config.cpp
  host/windows/file.cpp
  host/windows/guarded_call.cpp
  host/windows/library.cpp
  host/windows/quiet_errors.cpp
  host/windows/structured_storage.cpp
  host/windows/system.cpp
  host/windows/upper_extension.cpp
)
target_compile_definitions(typescout_host_native PRIVATE UNICODE WIN32_LEAN_AND_MEAN NOMINMAX
  WINVER=0x0602 _WIN32_WINNT=0x0602)
set(TYPESCOUT_HOST_LIBRARIES ole32)

# A program finds the module beside itself.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

# Nothing of the compiler's own beside the module and the programs, and what is released without
# symbols.
target_link_options(typescout_build INTERFACE -static $<$<CONFIG:Release>:-s>)

# What the system shows of a file, and how it runs the program.
enable_language(RC)
function(add_windows_resources target FILE_NAME FILE_DESCRIPTION FILE_TYPE MANIFEST_ID)
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${FILE_NAME}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows.rc.in ${resources} @ONLY)
  set_property(SOURCE ${resources} PROPERTY OBJECT_DEPENDS
    ${PROJECT_SOURCE_DIR}/packaging/windows.manifest)
  target_sources(${target} PRIVATE ${resources})
endfunction()

find_program(TYPESCOUT_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED)

# Called once the module `target` exists: its exports, and an import library that every linker
# reads. GNU ld's own is a set of objects whose order other linkers do not keep.
function(make_windows_module target)
  set(exports ${PROJECT_SOURCE_DIR}/module/typescout.def)
  target_sources(${target} PRIVATE module/windows_boundary.cpp ${exports})
  set_target_properties(${target} PROPERTIES
    PREFIX "" IMPORT_PREFIX "" IMPORT_SUFFIX ".lib" LINK_DEPENDS ${exports})
  add_windows_resources(${target} typescout.dll "Names the formats of files (library)" VFT_DLL 2)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${TYPESCOUT_DLLTOOL} -m i386:x86-64 -d ${exports} -l $<TARGET_LINKER_FILE:${target}>
    VERBATIM)
endfunction()
