# How what is installed becomes packages, by CPack: `./package` makes them all.
#
# Debian packages: one for each component of install(). A new one is its install() commands with
# COMPONENT NAME, and here a line debian_package(NAME ...).
# Archives (.tar.gz, .zip): all components in one.
set(CPACK_PACKAGE_NAME typescout)
set(CPACK_PACKAGE_VENDOR "TypeScout developers")
set(CPACK_PACKAGE_CONTACT "TypeScout developers <typescout@users.noreply.github.com>")
string(TOLOWER "${PROJECT_NAME}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}"
  CPACK_PACKAGE_FILE_NAME)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
# What Debian requires in each package beside what is installed.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian_documents.cmake)
set(CPACK_TYPESCOUT_SOURCE_DIR ${PROJECT_SOURCE_DIR})

# debian_package(NAME [LIBRARIES] SECTION section SUMMARY text DESCRIPTION line...
#                [DEPENDS component...])
# LIBRARIES: it has files in the folder of libraries.
# Packages of Debian's whose libraries the programs and modules in it need are found by themselves.
function(debian_package name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "LIBRARIES" "SECTION;SUMMARY" "DESCRIPTION;DEPENDS")
  list(JOIN arg_DESCRIPTION "\n" description)
  string(TOUPPER ${name} NAME)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${name} PARENT_SCOPE)
  set(CPACK_COMPONENT_${NAME}_DEPENDS ${arg_DEPENDS} PARENT_SCOPE)
  set(CPACK_COMPONENT_${NAME}_DESCRIPTION "${arg_SUMMARY}\n${description}" PARENT_SCOPE)
  set(CPACK_DEBIAN_${NAME}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${NAME}_PACKAGE_SECTION ${arg_SECTION} PARENT_SCOPE)
  if(arg_LIBRARIES)
    set(CPACK_DEBIAN_${NAME}_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers
      PARENT_SCOPE)
  endif()
endfunction()

set(library libtypescout${PROJECT_VERSION_MAJOR})
debian_package(${library} LIBRARIES SECTION libs
  SUMMARY "library that names a file's format"
  DESCRIPTION
    "You give it a path, it returns a number that stands for one of about a"
    "hundred formats of pictures, drawings, documents, sounds and films. It"
    "looks at the file's content, not at its name.")

debian_package(libtypescout-dev SECTION libdevel DEPENDS ${library}
  SUMMARY "library that names a file's format (development files)"
  DESCRIPTION
    "The header, what find_package and pkg-config need, and the documents for"
    "programs that use libtypescout.")

if(TYPESCOUT_CLI)
  debian_package(typescout SECTION utils DEPENDS ${library}
    SUMMARY "names the formats of files"
    DESCRIPTION
      "Prints for each file which of about a hundred formats of pictures,"
      "drawings, documents, sounds and films it has, as text, JSON or CSV. It"
      "looks at the content and tells when a file's name does not fit it.")
endif()

if(TYPESCOUT_CAMERA_RAW OR TYPESCOUT_PDF_IMPORT)
  debian_package(typescout-modules LIBRARIES SECTION libs DEPENDS ${library}
    SUMMARY "library that names a file's format (raw pictures, Illustrator's PDF)"
    DESCRIPTION
      "With these modules libtypescout knows the raw pictures of digital cameras"
      "and tells PDF files with the data of an Illustrator document from others."
      "It asks them by itself once they are installed.")
endif()

if(TYPESCOUT_PYTHON)
  debian_package(python3-typescout SECTION python DEPENDS ${library}
    SUMMARY "names the formats of files (Python 3)"
    DESCRIPTION
      "import typescout tells which of about a hundred formats of pictures,"
      "drawings, documents, sounds and films a file or a piece of memory has.")
  # The compiled module is for this one version of the interpreter.
  math(EXPR next "${TYPESCOUT_PYTHON_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON3-TYPESCOUT_PACKAGE_DEPENDS
    "python3 (>= 3.${TYPESCOUT_PYTHON_MINOR}~), python3 (<< 3.${next})")
endif()

include(CPack)
