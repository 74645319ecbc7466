# The shared library that hosts load, and the same object files as a static library for the tests, which look
# behind the published interface.

get_property(stages GLOBAL PROPERTY ORVANDEL_STAGES)
set(objects ${stages})
list(TRANSFORM objects REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")

orvandel_add_shared(orvandel SOURCES ${objects})
target_link_libraries(orvandel PUBLIC imgutil_i PRIVATE mvtools_i $<BUILD_INTERFACE:orvandel_base>)
set_target_properties(orvandel PROPERTIES LINKER_LANGUAGE CXX)
orvandel_export_only(orvandel ${PROJECT_SOURCE_DIR}/cmake/orvandel.map)

add_library(orvandel_core STATIC EXCLUDE_FROM_ALL ${objects})
set_target_properties(orvandel_core PROPERTIES LINKER_LANGUAGE CXX)
target_link_libraries(orvandel_core PUBLIC orvandel_options imgutil_i mvtools_i orvandel_base)
target_compile_definitions(orvandel_core INTERFACE ORVANDEL_STATIC)
