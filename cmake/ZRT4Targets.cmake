# What every target of this project shares: warnings, and the library names and versions.

function(zrt4_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Wcast-qual
    $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op -Wduplicated-cond -Wduplicated-branches>
    # Where sizes are 64 bits wide: elsewhere it names the casts that are needed there.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>>:-Wuseless-cast>
    $<$<BOOL:${ZRT4_WERROR}>:-Werror>)
endfunction()

# What a library of this project is made of, compiled once whatever it becomes a part of.
function(zrt4_library_objects target)
  zrt4_warnings(${target})
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
endfunction()

# A shared library of this project: SONAME from the project's version, only the declared interface
# exported, nothing of the standard library or of the scanner leaking out.
function(zrt4_shared_library target)
  add_library(${target} SHARED ${ARGN})
  zrt4_library_objects(${target})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    INSTALL_RPATH "$ORIGIN"  # the two libraries are installed side by side
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  target_link_options(${target} PRIVATE
    -Wl,--no-undefined,--as-needed
    -Wl,-Bsymbolic-functions  # calls inside the library take no detour through the symbol table
    -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    # The sanitizers' own run-time symbols are found in the program, not in the library.
    get_target_property(options ${target} LINK_OPTIONS)
    list(TRANSFORM options REPLACE "--no-undefined,--as-needed" "--as-needed")
    set_target_properties(${target} PROPERTIES LINK_OPTIONS "${options}")
  endif()
endfunction()
