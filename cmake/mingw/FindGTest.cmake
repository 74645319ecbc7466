# GTest::gtest_main, built from the sources of Debian's package googletest.
if(NOT TARGET GTest::gtest_main)
  set(sources /usr/src/googletest)
  if(NOT EXISTS ${sources}/CMakeLists.txt)
    message(FATAL_ERROR "${sources} is missing: scripts/install-dependencies windows")
  endif()
  set(BUILD_GMOCK OFF CACHE BOOL "")
  set(INSTALL_GTEST OFF CACHE BOOL "")
  # Static, whatever the project's own libraries are: a program would meet the compiler's runtime twice.
  set(shared_libs ${BUILD_SHARED_LIBS})
  set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)  # GoogleTest's own option gives way
  set(BUILD_SHARED_LIBS OFF)
  add_subdirectory(${sources} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  set(BUILD_SHARED_LIBS ${shared_libs})
endif()
set(GTest_FOUND TRUE)
