# Finds the Z3 solver's library with its C and C++ interface and defines the imported target Z3::z3.
find_path(Z3_INCLUDE_DIR z3++.h PATH_SUFFIXES z3)
find_library(Z3_LIBRARY z3)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Z3 REQUIRED_VARS Z3_LIBRARY Z3_INCLUDE_DIR)
mark_as_advanced(Z3_INCLUDE_DIR Z3_LIBRARY)

if(Z3_FOUND AND NOT TARGET Z3::z3)
  add_library(Z3::z3 UNKNOWN IMPORTED)
  set_target_properties(Z3::z3 PROPERTIES
    IMPORTED_LOCATION "${Z3_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Z3_INCLUDE_DIR}")
endif()
