# What Debian wants of each package besides what is installed everywhere: run by CPack for the
# folders that it makes packages of, one for each component.

# Without name and time, so that the same tree gives the same package.
function(compress)
  execute_process(COMMAND gzip -9nf ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
  file(MAKE_DIRECTORY ${share}/doc/${package} ${share}/lintian/overrides)

  file(COPY_FILE ${CPACK_ZRT4_DEBIAN}/copyright ${share}/doc/${package}/copyright)
  file(COPY_FILE ${CPACK_ZRT4_MADE}/changelog ${share}/doc/${package}/changelog)
  compress(${share}/doc/${package}/changelog)

  file(READ ${CPACK_ZRT4_DEBIAN}/all.lintian-overrides overrides)
  if(EXISTS ${CPACK_ZRT4_DEBIAN}/${component}.lintian-overrides)
    file(READ ${CPACK_ZRT4_DEBIAN}/${component}.lintian-overrides more)
    string(APPEND overrides "${more}")
  endif()
  file(WRITE ${share}/lintian/overrides/${package} "${overrides}")

  file(GLOB pages ${share}/man/man1/*.1)
  if(pages)
    compress(${pages})
  endif()
  file(CHMOD_RECURSE ${share} FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
       DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
       WORLD_READ WORLD_EXECUTE)
endforeach()

# Since which version programs need the library, for each symbol.
execute_process(
  COMMAND dpkg-gensymbols -p${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} -v${CPACK_PACKAGE_VERSION}
          -P${CPACK_TEMPORARY_DIRECTORY}/runtime -I${CPACK_ZRT4_MADE}/symbols.in
          -O${CPACK_ZRT4_MADE}/symbols -c4
  COMMAND_ERROR_IS_FATAL ANY)
