include(CheckLinkerFlag)

# Lets a shared library export only the contents of the namespace lumo, under a version. Internal parts of
# that namespace are hidden where they are declared. A linker without version scripts exports everything.
function(lumo_limit_exports target)
  get_target_property(type ${target} TYPE)
  if(NOT type STREQUAL "SHARED_LIBRARY")
    return()
  endif()
  set_target_properties(${target} PROPERTIES VISIBILITY_INLINES_HIDDEN ON)
  set(script "${PROJECT_BINARY_DIR}/lumo.map")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/lumo.map.in" "${script}" @ONLY)
  check_linker_flag(CXX "LINKER:--version-script=${script}" LUMO_HAVE_VERSION_SCRIPT)
  if(LUMO_HAVE_VERSION_SCRIPT)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
    set_target_properties(${target} PROPERTIES LINK_DEPENDS "${script}")
  endif()
endfunction()
