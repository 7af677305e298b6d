# `cpack -G DEB` makes two packages of a build with a static library: lumo with the program, and liblumo-dev with the
# rest. scripts/package.sh builds as Debian expects it, and calls cpack.
include(GNUInstallDirs)

set(CPACK_PACKAGE_NAME lumo)
set(CPACK_PACKAGE_CONTACT "the lumo authors <lumo@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
"A constant that occurs only once in a formula can be chosen at will, and
often so can what is applied to it. lumo removes such unconstrained terms
from problems over Booleans and bit-vectors before a solver sees them, and
makes a model of the original problem from the solver's model of the rest.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Development)
if(LUMO_BUILD_CLI)
  list(APPEND CPACK_COMPONENTS_ALL Program)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME lumo)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION math)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}
This package has the program, which does so with SMT-LIB 2 scripts.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liblumo-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS libgmp-dev)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}
This package has what it takes to build programs on top of the library.")

# Each package contains the licence.
foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} upper)
  install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" RENAME copyright COMPONENT ${component} EXCLUDE_FROM_ALL
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}")
endforeach()

include(CPack)
