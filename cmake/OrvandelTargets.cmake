# How every target of the project is compiled, and the helpers that make them.

add_library(orvandel_options INTERFACE)
target_compile_features(orvandel_options INTERFACE cxx_std_20)
target_include_directories(orvandel_options INTERFACE ${PROJECT_SOURCE_DIR})

if(MSVC)
  target_compile_options(orvandel_options INTERFACE /W4 /permissive- /utf-8 /fp:precise)
else()
  # Fused multiply-add would change the last bits of results from one machine to the next.
  target_compile_options(orvandel_options INTERFACE -ffp-contract=off)
  target_compile_options(orvandel_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wdouble-promotion -Wnon-virtual-dtor)
endif()
if(ORVANDEL_WARNINGS_AS_ERRORS)
  target_compile_options(orvandel_options INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/WX,-Werror>)
endif()
if(ORVANDEL_SANITIZE)
  target_compile_options(orvandel_options INTERFACE
    -fsanitize=${ORVANDEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(orvandel_options INTERFACE -fsanitize=${ORVANDEL_SANITIZE})
  # GCC's warnings about sizes and bounds misread the instrumented standard library; the plain builds have
  # them on.
  target_compile_options(orvandel_options INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow;-Wno-array-bounds;-Wno-maybe-uninitialized>)
endif()

# orvandel_add_library(<folder> SOURCES <files> [LINKS <folders>]): one stage of the chain, as object files
# that both the shared library and the tests are made of. LINKS names the stages that it may call.
function(orvandel_add_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(orvandel_${name} OBJECT ${ARG_SOURCES})
  list(TRANSFORM ARG_LINKS PREPEND orvandel_)
  target_link_libraries(orvandel_${name} PUBLIC orvandel_options ${ARG_LINKS})
  target_compile_definitions(orvandel_${name} PRIVATE ORVANDEL_BUILDING)
  set_target_properties(orvandel_${name} PROPERTIES
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  set_property(GLOBAL APPEND PROPERTY ORVANDEL_STAGES orvandel_${name})
endfunction()

# orvandel_add_shared(<name> OUTPUT <file name> SOURCES <files>): a shared library that hosts link, with the
# project's version, hidden symbols and export set.
function(orvandel_add_shared name)
  cmake_parse_arguments(ARG "" "DEFINE" "SOURCES" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  add_library(Orvandel::${name} ALIAS ${name})
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:orvandel_options>)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_compile_definitions(${name} PRIVATE ${ARG_DEFINE})
  # Hosts include "search/qrsis.h", from the source tree or from the installed include/orvandel.
  target_include_directories(${name} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/orvandel>)
  set_target_properties(${name} PROPERTIES
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()

# orvandel_export_only(<target> <map file>): on ELF, exports what the version script names and nothing else.
function(orvandel_export_only target map)
  if(UNIX AND NOT APPLE)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${map}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
  endif()
endfunction()
