# Writes PAGE_SOURCES, a C++ source that holds the page's parts: the skeleton, the style, and the
# script, with the hashes by which the page's policy allows the two.
#   cmake -D FROM=tools/page -D PAGE_SOURCES=page_sources.cc -P embed.cmake

cmake_minimum_required(VERSION 3.25)

# The modules in an order in which each stands behind those that it imports from. As one script they
# need no import.
set(modules dom state data search sheets grid bits card sheet_view charts overview main)

# What browsers compare with: the hash in base64.
function(policy_hash text result)
  string(SHA256 hex "${text}")
  string(APPEND hex "00")  # 33 bytes are 44 digits; the last is the padding's
  set(digits "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  set(base64 "")
  foreach(place RANGE 0 60 6)
    string(SUBSTRING "${hex}" ${place} 6 group)
    foreach(shift 18 12 6 0)
      math(EXPR digit "(0x${group} >> ${shift}) & 63")
      string(SUBSTRING "${digits}" ${digit} 1 letter)
      string(APPEND base64 "${letter}")
    endforeach()
  endforeach()
  string(SUBSTRING "${base64}" 0 43 base64)
  set(${result} "'sha256-${base64}='" PARENT_SCOPE)
endfunction()

# A literal that is no longer than a compiler must take.
function(add_literal text)
  string(FIND "${text}" ")page\"" end)
  string(LENGTH "${text}" length)
  if(NOT end EQUAL -1 OR length GREATER 65000)
    message(FATAL_ERROR "A part of the page cannot be a literal")
  endif()
  set(literals "${literals}    R\"page(${text})page\",\n" PARENT_SCOPE)
endfunction()

function(add_part name)
  set(source "${source}constexpr std::string_view ${name}[] = {\n${literals}};\n\n" PARENT_SCOPE)
endfunction()

set(source "// Made by embed.cmake.\n\n#include \"page_sources.hh\"\n\nnamespace {\n\n")

set(literals "")
file(READ "${FROM}/page.html" html)
add_literal("${html}")
add_part(html)

set(literals "")
file(READ "${FROM}/style.css" style)
add_literal("${style}")
add_part(style)
policy_hash("${style}" style_hash)

set(literals "")
set(script "")
set(names "")
foreach(module IN LISTS modules ITEMS end)
  if(module STREQUAL end)
    set(text "})();\n")
  else()
    file(READ "${FROM}/${module}.js" text)
    string(REGEX REPLACE "\nimport [^\n]*" "" text "\n${text}")
    string(REGEX REPLACE "\nexport " "\n" text "${text}")
    string(REGEX MATCHALL "\n(async function|function|const|class) [A-Za-z]+" declared "${text}")
    foreach(declaration IN LISTS declared)
      string(REGEX REPLACE ".* " "" name "${declaration}")
      if(name IN_LIST names)
        message(FATAL_ERROR "${module}.js: another module has a '${name}', too")
      endif()
      list(APPEND names "${name}")
    endforeach()
    if(module STREQUAL dom)
      string(PREPEND text "\"use strict\";\n(() => {\n")
    endif()
  endif()
  add_literal("${text}")
  string(APPEND script "${text}")
endforeach()
add_part(script)
policy_hash("${script}" script_hash)

string(APPEND source "}  // namespace

const page_sources page_parts{html[0], style[0], {script, std::size(script)},
                              \"${script_hash}\", \"${style_hash}\"};
")
file(WRITE "${PAGE_SOURCES}" "${source}")
