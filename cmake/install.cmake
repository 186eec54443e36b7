# What is installed where. A component is a package (packaging/packages.cmake).
include(CMakePackageConfigHelpers)

set(runtime_package libtypescout${PROJECT_VERSION_MAJOR})
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/typescout)

install(TARGETS typescout EXPORT typescout-targets
  RUNTIME COMPONENT ${runtime_package}
  LIBRARY COMPONENT ${runtime_package} NAMELINK_COMPONENT libtypescout-dev
  ARCHIVE COMPONENT libtypescout-dev)
install(FILES include/typescout/typescout.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/typescout COMPONENT libtypescout-dev)

# find_package(typescout)
install(EXPORT typescout-targets NAMESPACE typescout::
  DESTINATION ${package_folder} COMPONENT libtypescout-dev)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/typescout-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  packaging/typescout-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/typescout-config-version.cmake
  DESTINATION ${package_folder} COMPONENT libtypescout-dev)

# pkg-config typescout. The prefix follows from the place of the file, so the tree may be moved.
file(RELATIVE_PATH PC_TO_PREFIX
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH PC_LIBDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH PC_INCLUDEDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
set(PC_LIBRARIES "")
if(NOT BUILD_SHARED_LIBS)
  list(TRANSFORM TYPESCOUT_HOST_LIBRARIES REPLACE "^[^/]+$" "-l\\0" OUTPUT_VARIABLE PC_LIBRARIES)
  list(JOIN PC_LIBRARIES " " PC_LIBRARIES)
endif()
configure_file(packaging/typescout.pc.in ${CMAKE_CURRENT_BINARY_DIR}/typescout.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/typescout.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT libtypescout-dev)

# Documents, in the folders in which they refer to each other.
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT libtypescout-dev)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT libtypescout-dev
  PATTERN typescout.1 EXCLUDE)

if(TYPESCOUT_CLI)
  file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_property(TARGET typescout_cli APPEND PROPERTY INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
  install(TARGETS typescout_cli RUNTIME COMPONENT typescout)
  if(NOT WIN32)
    install(FILES docs/typescout.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT typescout)
  endif()
  # The program prints its own completion scripts, so it must run here.
  if(NOT CMAKE_CROSSCOMPILING)
    set(TYPESCOUT_ZSH_COMPLETIONS_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
      CACHE STRING "Where zsh's completion functions are installed")
    set(bash ${CMAKE_INSTALL_DATADIR}/bash-completion/completions/typescout)
    set(zsh ${TYPESCOUT_ZSH_COMPLETIONS_DIR}/_typescout)
    set(fish ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d/typescout.fish)
    foreach(shell bash zsh fish)
      set(script ${CMAKE_CURRENT_BINARY_DIR}/completions/${shell})
      add_custom_command(OUTPUT ${script}
        # A program built for a package has no path to the library of its own.
        COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=$<TARGET_FILE_DIR:typescout>
          $<TARGET_FILE:typescout_cli> --completion ${shell} > ${script}
        DEPENDS typescout_cli VERBATIM)
      list(APPEND scripts ${script})
      cmake_path(GET ${shell} PARENT_PATH folder)
      cmake_path(GET ${shell} FILENAME name)
      install(FILES ${script} DESTINATION ${folder} RENAME ${name} COMPONENT typescout)
    endforeach()
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/completions)
    add_custom_target(typescout_completions ALL DEPENDS ${scripts})
  endif()
endif()

# The modules lie where the library looks for them: beside it, and in the folder of filters there.
set(modules_documents ${CMAKE_INSTALL_DATADIR}/doc/typescout-modules)
if(TYPESCOUT_CAMERA_RAW)
  install(TARGETS typescout_camera_raw
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT typescout-modules)
  install(FILES modules/camera_raw/README.md RENAME DCRaw.md
    DESTINATION ${modules_documents} COMPONENT typescout-modules)
endif()
if(TYPESCOUT_PDF_IMPORT)
  install(TARGETS typescout_pdf_import
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/filters COMPONENT typescout-modules)
  install(FILES modules/pdf_import/README.md RENAME TvnPDFImport.md
    DESTINATION ${modules_documents} COMPONENT typescout-modules)
endif()
