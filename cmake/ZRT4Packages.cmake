# Debian packages, one per component of the installation: libzrt4xml1 (the number is the SONAME's),
# libzrt4xml-dev, zrt4xml and python3-zrt4xml. Made by scripts/package.

set(library_package libzrt4xml${PROJECT_VERSION_MAJOR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zrt4xml)
set(CPACK_PACKAGE_VENDOR "ZRT4 DAQ")
set(ZRT4_PACKAGE_CONTACT "ZRT4 DAQ <zrt4-daq@localhost>" CACHE STRING
    "Whom the packages name as their maintainer")
set(CPACK_PACKAGE_CONTACT "${ZRT4_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(ZRT4_TOOL)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
if(ZRT4_PYTHON)
  list(APPEND CPACK_COMPONENTS_ALL python)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/XML_tools ${PROJECT_BINARY_DIR}/event_util)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/cmake/debian/triggers ${PROJECT_BINARY_DIR}/debian/symbols)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "The shared libraries that programs load: readers of event lists, channel
descriptions, environment index dictionaries and features of GigE cameras,
writers of channel descriptions and dictionaries, and the names and classes
of event and data types.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzrt4xml-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${library_package} (= ${PROJECT_VERSION}), libxerces-c-dev (>= 3.2)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "What programs that use the library are built with: its headers, CMake package
and pkg-config file, with the documentation, and with examples of all kinds of
documents and of a program.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME zrt4xml)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOL_DESCRIPTION
  "The command-line tool, which shows, checks, compares, selects, changes and
converts these documents, with its manual page and completion. With it come
grammars (RELAX NG and XML Schema) for editors and validators, and the schema
of the tool's JSON.")

# Built for one version of Python, the system's.
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-zrt4xml)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
math(EXPR next_python "${Python_VERSION_MINOR} + 1")
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION}), python3 (>= ${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}), python3 (<< ${Python_VERSION_MAJOR}.${next_python}), python3-numpy")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS python3-pandas)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA  # compiled sources come and go with the package
  ${PROJECT_SOURCE_DIR}/cmake/python3-zrt4xml/postinst
  ${PROJECT_SOURCE_DIR}/cmake/python3-zrt4xml/prerm)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
  "The package zrt4xml of Python, in which these documents are lists of records,
arrays of NumPy and data frames of pandas, with what the command-line tool
tells about them. Its types are annotated.")

# What else Debian wants of a package: cmake/debian/finish.cmake adds it.
set(CPACK_ZRT4_DEBIAN ${PROJECT_SOURCE_DIR}/cmake/debian)
set(CPACK_ZRT4_MADE ${PROJECT_BINARY_DIR}/debian)
execute_process(COMMAND date -u -R -d ${ZRT4_VERSION_DATE}
  OUTPUT_VARIABLE debian_date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(cmake/debian/changelog.in debian/changelog @ONLY)
configure_file(cmake/debian/symbols.in debian/symbols.in @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/finish.cmake)

include(CPack)
