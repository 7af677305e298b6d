# Finds the FLINT number theory library and defines the imported target FLINT::flint.
find_path(FLINT_INCLUDE_DIR flint/fmpq.h)
find_library(FLINT_LIBRARY flint)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(FLINT REQUIRED_VARS FLINT_LIBRARY FLINT_INCLUDE_DIR)
mark_as_advanced(FLINT_INCLUDE_DIR FLINT_LIBRARY)

if(FLINT_FOUND AND NOT TARGET FLINT::flint)
  add_library(FLINT::flint UNKNOWN IMPORTED)
  set_target_properties(FLINT::flint PROPERTIES
    IMPORTED_LOCATION "${FLINT_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${FLINT_INCLUDE_DIR}")
endif()
