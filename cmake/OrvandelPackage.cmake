# What `cmake --install` lays down, and the archives and Debian packages that cpack makes of it. The tool's folder
# installs the tool.
#
# Components: runtime (libraries and tool, and what names none), development (headers, CMake package, pkg-config file).

include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME runtime)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Orvandel)

# Installed files find each other wherever the prefix is moved to: this leads from the pkg-config file to the prefix.
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)

set(libraries orvandel)
if(ORVANDEL_CLASSIC)
  list(APPEND libraries imgutil_i mvtools_i)
endif()
if(NOT BUILD_SHARED_LIBS)
  # A static library does not contain those that it links.
  list(APPEND libraries orvandel_base)
  if(ORVANDEL_CLASSIC)
    list(APPEND libraries orvandel_atomic_file)
  endif()
endif()
set_target_properties(${libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS ${libraries} EXPORT OrvandelTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)

set(left_out)
if(NOT ORVANDEL_CLASSIC)
  set(left_out PATTERN classic EXCLUDE)
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/orvandel
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development ${left_out})

install(EXPORT OrvandelTargets NAMESPACE Orvandel:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/OrvandelConfig.cmake.in ${PROJECT_BINARY_DIR}/OrvandelConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvandelConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrvandelConfig.cmake ${PROJECT_BINARY_DIR}/OrvandelConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# Hosts of static libraries link all of them, and those in C the C++ library as well: that is what
# `pkg-config --static` adds.
list(TRANSFORM libraries PREPEND -l OUTPUT_VARIABLE pc_libraries)
string(JOIN " " pc_libraries ${pc_libraries})
set(pc_private_libraries)
set(pc_definitions)
if(NOT BUILD_SHARED_LIBS)
  set(pc_private_libraries ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
  list(FILTER pc_private_libraries INCLUDE REGEX "^(stdc\\+\\+|c\\+\\+|m)$")
  list(TRANSFORM pc_private_libraries PREPEND -l)
  string(JOIN " " pc_private_libraries ${pc_private_libraries})
  set(pc_definitions -DORVANDEL_STATIC)
  if(ORVANDEL_CLASSIC)
    string(APPEND pc_definitions " -DIMGUTIL_STATIC -DMVTOOLS_STATIC")
  endif()
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/orvandel.pc.in ${PROJECT_BINARY_DIR}/orvandel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvandel.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/NOTICES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        ${PROJECT_SOURCE_DIR}/BENCHMARK.md ${PROJECT_SOURCE_DIR}/SECURITY.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/orvandel)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/orvandel)

set(CPACK_PACKAGE_NAME orvandel)
set(CPACK_PACKAGE_VENDOR "The Orvandel developers")
set(CPACK_PACKAGE_CONTACT "The Orvandel developers <orvandel@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
elseif(APPLE)
  set(CPACK_GENERATOR TGZ)
else()
  set(CPACK_GENERATOR TGZ DEB)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME orvandel)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Libraries and command-line tool of Orvandel")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborvandel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Headers, CMake package and pkg-config file of Orvandel")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "orvandel (= ${PROJECT_VERSION})")
include(CPack)
