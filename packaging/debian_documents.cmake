# Run by CPack before the packages are written. Debian's policy: manual pages are compressed, and each
# package has a changelog and a copyright file in /usr/share/doc/PACKAGE.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
set(source ${CPACK_TYPESCOUT_SOURCE_DIR})

function(compress file)
  execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component ${CPACK_COMPONENTS_ALL})
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX})
  if(NOT IS_DIRECTORY ${root})
    message(FATAL_ERROR "nothing is installed at ${root}")
  endif()
  set(folder ${root}/share/doc/${component})
  file(WRITE ${folder}/changelog.Debian "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * The changes are in changelog.gz.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
  compress(${folder}/changelog.Debian)
  file(COPY_FILE ${source}/CHANGELOG.md ${folder}/changelog)
  compress(${folder}/changelog)
  file(COPY_FILE ${source}/packaging/copyright ${folder}/copyright)
  file(GLOB pages ${root}/share/man/man*/*.[1-9])
  foreach(page ${pages})
    compress(${page})
  endforeach()
  file(GLOB_RECURSE documents ${root}/share/*)
  file(CHMOD ${documents} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endforeach()
