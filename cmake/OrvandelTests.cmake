# How test programs are made and made known to ctest.

find_package(GTest REQUIRED)
include(GoogleTest)

# Starting a program is what takes the time under Wine and, less, with sanitizers.
option(ORVANDEL_TESTS_BY_PROGRAM "One ctest entry a test program, instead of one a test" OFF)

# What scripts/test quick builds; its tests have the label quick.
add_custom_target(quick)

# orvandel_add_tests_of(<program> <name> [SLOW]): makes the tests of a program known, under names that begin with <name>.
# SLOW keeps them out of the quick round.
function(orvandel_add_tests_of program name)
  cmake_parse_arguments(ARG "SLOW" "" "" ${ARGN})
  set(label LABELS quick)
  if(ARG_SLOW)
    set(label)
  else()
    add_dependencies(quick ${program})
  endif()
  if(ORVANDEL_TESTS_BY_PROGRAM)
    add_test(NAME ${name} COMMAND ${program})
    set_tests_properties(${name} PROPERTIES TIMEOUT 1200 ${label})
  else()
    gtest_discover_tests(${program} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300 ${label})
  endif()
endfunction()

# orvandel_compile_tests_of(<program>): how the sources of a test program are compiled. Most of their time goes into headers,
# so eight are compiled as one: what two of them need stands in a header. Whatever replaces malloc or new stays alone, or
# compilers warn of what they see through it. GoogleTest's macros run once, and take a quarter longer to optimise fully.
function(orvandel_compile_tests_of program)
  target_compile_options(${program} PRIVATE $<$<NOT:$<CXX_COMPILER_ID:MSVC>>:-O1>)
  set_target_properties(${program} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  get_target_property(sources ${program} SOURCES)
  list(FILTER sources INCLUDE REGEX "_allocations\\.cpp$")
  set_source_files_properties(${sources} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# orvandel_add_test(<name> [SLOW] SOURCES <files> [LINKS <targets>]): one test program a folder. It links the stages'
# object files, so that it can look behind the published interface.
function(orvandel_add_test name)
  cmake_parse_arguments(ARG "SLOW" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name}_test ${ARG_SOURCES})
  target_link_libraries(${name}_test PRIVATE orvandel_core ${ARG_LINKS} GTest::gtest_main)
  orvandel_compile_tests_of(${name}_test)
  set(slow)
  if(ARG_SLOW)
    set(slow SLOW)
  endif()
  orvandel_add_tests_of(${name}_test ${name} ${slow})
endfunction()
