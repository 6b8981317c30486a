# Installation: libraries, headers (one folder, found by bare name), the tool, the CMake package
# and the pkg-config file. Four components, which are also the Debian packages: runtime (the
# libraries), development, tool and python.
include(CMakePackageConfigHelpers)

set(ZRT4_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/zrt4xml)
set(ZRT4_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/ZRT4XML)

set(installed_targets ZRT4XML)
if(ZRT4_EVUTL STREQUAL bundled)
  list(APPEND installed_targets ZRT4evutl)
endif()
install(TARGETS ${installed_targets} EXPORT ZRT4XMLTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
                COMPONENT runtime NAMELINK_COMPONENT development
        FILE_SET HEADERS DESTINATION ${ZRT4_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT ZRT4XMLTargets NAMESPACE ZRT4XML:: DESTINATION ${ZRT4_INSTALL_CMAKEDIR}
        COMPONENT development)

configure_package_config_file(cmake/ZRT4XMLConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZRT4XMLConfig.cmake INSTALL_DESTINATION ${ZRT4_INSTALL_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZRT4XMLConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZRT4XMLConfig.cmake
              ${PROJECT_BINARY_DIR}/ZRT4XMLConfigVersion.cmake
        DESTINATION ${ZRT4_INSTALL_CMAKEDIR} COMPONENT development)

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE ZRT4_PREFIX_FROM_PC)
configure_file(cmake/zrt4xml.pc.in ${PROJECT_BINARY_DIR}/zrt4xml.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zrt4xml.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

if(ZRT4_TOOL)
  install(TARGETS zrt4xml RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
endif()

# What a person reads: the pages and the documents of examples/ beside the headers, and the schema of
# the JSON beside the tool that prints it.
set(ZRT4_INSTALL_DOCDIR ${CMAKE_INSTALL_DATADIR}/doc/libzrt4xml-dev)
install(FILES README.md DESTINATION ${ZRT4_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs DESTINATION ${ZRT4_INSTALL_DOCDIR} COMPONENT development
        FILES_MATCHING PATTERN "*.md")
install(DIRECTORY examples DESTINATION ${ZRT4_INSTALL_DOCDIR} COMPONENT development)
if(ZRT4_TOOL)
  install(FILES docs/zrt4xml.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/zrt4xml
          COMPONENT tool)
endif()
