# How every target of the project is compiled, and the helpers that make them.

add_library(orvandel_options INTERFACE)
target_compile_features(orvandel_options INTERFACE cxx_std_20)
# Hosts see include/ alone; the rooms include each other from src/, tool and tests from the root.
target_include_directories(orvandel_options INTERFACE
  ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})

if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(ORVANDEL_X86 ON)
endif()

if(MSVC)
  # From Visual Studio 2022 on, /fp:precise leaves multiplications and additions apart; clang-cl has to be told.
  target_compile_options(orvandel_options INTERFACE
    /fp:precise $<$<CXX_COMPILER_ID:Clang>:/clang:-ffp-contract=off>)
  # 4251: exported classes hold standard containers, so host and library share one runtime anyway.
  target_compile_options(orvandel_options INTERFACE
    /W4 /wd4251 /permissive- /utf-8 /Zc:__cplusplus /bigobj)
  target_compile_definitions(orvandel_options INTERFACE _CRT_SECURE_NO_WARNINGS _CRT_NONSTDC_NO_WARNINGS)
else()
  # Fused multiply-add would change the last bits of results from one machine to the next.
  target_compile_options(orvandel_options INTERFACE -ffp-contract=off)
  target_compile_options(orvandel_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wdouble-promotion -Wnon-virtual-dtor)
endif()
if(NOT BUILD_SHARED_LIBS)
  target_compile_definitions(orvandel_options INTERFACE IMGUTIL_STATIC MVTOOLS_STATIC)
endif()
if(MINGW)
  # It misreads short strings of the standard library; the builds for Linux have these warnings on.
  target_compile_options(orvandel_options INTERFACE -Wno-array-bounds -Wno-stringop-overflow)
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

# What makes a mistake that slipped through hard to use, in every optimised build. The sanitizers do better themselves.
if(MSVC)
  target_compile_options(orvandel_options INTERFACE /guard:cf)
  target_link_options(orvandel_options INTERFACE /guard:cf)
elseif(NOT ORVANDEL_SANITIZE AND CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$")
  set(ORVANDEL_HARDENED ON)
  target_compile_options(orvandel_options INTERFACE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  if(ORVANDEL_X86 AND NOT WIN32)
    target_compile_options(orvandel_options INTERFACE -fcf-protection -fstack-clash-protection)
  endif()
  if(WIN32)
    target_link_options(orvandel_options INTERFACE -fstack-protector-strong
      LINKER:--dynamicbase,--high-entropy-va,--nxcompat)
  elseif(UNIX AND NOT APPLE)
    target_link_options(orvandel_options INTERFACE LINKER:-z,relro,-z,now,-z,noexecstack)
  endif()
endif()

if(WIN32)
  # Windows looks for a program's DLLs in the program's folder.
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
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

# orvandel_add_internal(<name> SOURCES <files>): a static library of the project's own, that libraries and tool share.
function(orvandel_add_internal name)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_library(orvandel_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(orvandel_${name} PUBLIC $<BUILD_INTERFACE:orvandel_options>)
  set_target_properties(orvandel_${name} PROPERTIES
    EXPORT_NAME ${name}
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# orvandel_add_host_library(<name> PREFIX <prefix> SOURCES <files>): a library that hosts link, shared unless
# BUILD_SHARED_LIBS is off, with the project's version, hidden symbols and export set. Its public headers know
# <prefix>_BUILDING and <prefix>_STATIC.
function(orvandel_add_host_library name)
  cmake_parse_arguments(ARG "" "PREFIX" "SOURCES" ${ARGN})
  add_library(${name} ${ARG_SOURCES})
  add_library(Orvandel::${name} ALIAS ${name})
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:orvandel_options>)
  target_compile_features(${name} INTERFACE cxx_std_14)  # what the public headers need; the sources need C++20
  target_compile_definitions(${name} PRIVATE ${ARG_PREFIX}_BUILDING)
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(${name} INTERFACE ${ARG_PREFIX}_STATIC)
  endif()
  # Hosts include <orvandel/classic/qrsis.h>, from the source tree or from where it was installed.
  target_include_directories(${name} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${name} PROPERTIES
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(WIN32 AND BUILD_SHARED_LIBS)
    set_target_properties(${name} PROPERTIES PREFIX "")  # hosts load imgutil_i.dll, whatever compiler made it
  endif()
endfunction()

# orvandel_export_only(<target> <map file>): on ELF, exports what the version script names and nothing else.
function(orvandel_export_only target map)
  if(BUILD_SHARED_LIBS AND UNIX AND NOT APPLE)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${map}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
  endif()
endfunction()
