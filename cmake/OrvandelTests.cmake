# orvandel_add_test(<name> SOURCES <files> [LINKS <targets>]): one test program a folder. It links the stages'
# object files, so that it can look behind the published interface.

find_package(GTest REQUIRED)
include(GoogleTest)

function(orvandel_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name}_test ${ARG_SOURCES})
  target_link_libraries(${name}_test PRIVATE orvandel_core ${ARG_LINKS} GTest::gtest_main)
  # GoogleTest's macros run once, and take a quarter longer to optimise fully.
  target_compile_options(${name}_test PRIVATE $<$<NOT:$<CXX_COMPILER_ID:MSVC>>:-O1>)
  target_precompile_headers(${name}_test PRIVATE <gtest/gtest.h>)
  gtest_discover_tests(${name}_test TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()
