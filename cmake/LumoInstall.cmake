# Installs the library with its headers and the files by which other projects find it, and the program if it is built.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/lumo")

install(TARGETS lumo lumo_smtlib EXPORT lumoTargets COMPONENT Development
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT Development)
install(EXPORT lumoTargets NAMESPACE lumo:: DESTINATION "${package_dir}" COMPONENT Development)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/lumoConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/lumoConfig.cmake" INSTALL_DESTINATION "${package_dir}")
# Before 1.0, each minor version may change the interface.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/lumoConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/lumoConfig.cmake"
  "${PROJECT_BINARY_DIR}/lumoConfigVersion.cmake"
  "${PROJECT_SOURCE_DIR}/cmake/FindGMP.cmake"
  DESTINATION "${package_dir}" COMPONENT Development)

# Packages leave this component out, since they install the licence where the distribution expects it.
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT License)

# The options that a linker other than the C++ compiler's needs to link with a static library
set(pc_libs_private)
foreach(library ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
  if(library MATCHES "^(stdc\\+\\+|c\\+\\+|c\\+\\+abi|m)$")
    list(APPEND pc_libs_private "-l${library}")
  endif()
endforeach()
list(REMOVE_DUPLICATES pc_libs_private)
list(JOIN pc_libs_private " " pc_libs_private)

# From the folder of lumo.pc to the prefix, so that an installation can be moved
set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  file(RELATIVE_PATH to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
  set(pc_prefix "\${pcfiledir}/${to_prefix}")
endif()
cmake_path(APPEND pc_libdir "\${prefix}" "${CMAKE_INSTALL_LIBDIR}")
cmake_path(APPEND pc_includedir "\${prefix}" "${CMAKE_INSTALL_INCLUDEDIR}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/lumo.pc.in" "${PROJECT_BINARY_DIR}/lumo.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/lumo.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT Development)

if(LUMO_BUILD_CLI)
  if(BUILD_SHARED_LIBS)
    # The program finds the library of its own installation, wherever that is moved.
    file(RELATIVE_PATH to_library "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    set_target_properties(lumo_cli PROPERTIES INSTALL_RPATH "$ORIGIN/${to_library}")
  endif()
  install(TARGETS lumo_cli RUNTIME COMPONENT Program)
endif()
