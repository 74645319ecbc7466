# What `cmake --install` lays down: libraries, headers, tool, CMake package and pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS orvandel imgutil_i mvtools_i EXPORT OrvandelTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT OrvandelTargets NAMESPACE Orvandel::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Orvandel)

foreach(header IN ITEMS
    platform/export.h platform/imgutil_i.h platform/mvtools_i.h edges/sub_canny.h contours/edge_record.h
    contours/crawler.h contours/ctd.h lines/line_segment.h lines/line_extracter.h verify/patt_verify.h
    search/qrsis.h)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${header}
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvandel/${folder})
endforeach()

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/OrvandelConfig.cmake.in ${PROJECT_BINARY_DIR}/OrvandelConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Orvandel)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvandelConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrvandelConfig.cmake ${PROJECT_BINARY_DIR}/OrvandelConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Orvandel)

configure_file(${PROJECT_SOURCE_DIR}/cmake/orvandel.pc.in ${PROJECT_BINARY_DIR}/orvandel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvandel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
