# find_package(typescout 1.0) gives the target typescout::typescout.
include(${CMAKE_CURRENT_LIST_DIR}/typescout-targets.cmake)
