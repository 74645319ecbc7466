# orvandel_import_headers(<target> <folder> [DEFINE <definitions>]): an imported target for a library that is nothing
# but headers, in /usr/include/<folder>. All of /usr/include would hide the compiler's own headers for Windows, so the
# target's include folder is one of the build's, with a link to the one folder that is meant.
function(orvandel_import_headers target folder)
  cmake_parse_arguments(ARG "" "" "DEFINE" ${ARGN})
  set(source /usr/include/${folder})
  if(NOT EXISTS ${source})
    message(FATAL_ERROR "${source} is missing: scripts/install-dependencies build")
  endif()
  set(links ${CMAKE_BINARY_DIR}/host_headers/${folder})
  file(MAKE_DIRECTORY ${links})
  file(CREATE_LINK ${source} ${links}/${folder} SYMBOLIC)
  if(NOT TARGET ${target})
    add_library(${target} INTERFACE IMPORTED)
    target_include_directories(${target} INTERFACE ${links})
    target_compile_definitions(${target} INTERFACE ${ARG_DEFINE})
  endif()
endfunction()
