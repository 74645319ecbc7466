# The library that hosts load, and the same object files as a static library for tool, benchmarks and tests, which look
# behind the published interface.

get_property(stages GLOBAL PROPERTY ORVANDEL_STAGES)
set(objects ${stages})
list(TRANSFORM objects REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")

add_library(orvandel_core STATIC EXCLUDE_FROM_ALL ${objects})
set_target_properties(orvandel_core PROPERTIES LINKER_LANGUAGE CXX)
target_link_libraries(orvandel_core PUBLIC orvandel_options orvandel_base)
target_compile_definitions(orvandel_core INTERFACE ORVANDEL_STATIC)
if(ORVANDEL_CLASSIC)
  target_link_libraries(orvandel_core PUBLIC imgutil_i mvtools_i)
endif()

orvandel_add_host_library(orvandel PREFIX ORVANDEL SOURCES ${objects})
target_link_libraries(orvandel PRIVATE orvandel_base)
if(ORVANDEL_CLASSIC)
  target_link_libraries(orvandel PUBLIC imgutil_i PRIVATE mvtools_i)
endif()
set_target_properties(orvandel PROPERTIES LINKER_LANGUAGE CXX)
orvandel_export_only(orvandel ${PROJECT_SOURCE_DIR}/cmake/orvandel.map)
