# Hot loops, compiled once for each level of vector instructions. Which form runs is chosen at run time, so the rest of
# the library runs on every processor. src/platform/simd_dispatch.h tells what a kernel file looks like.

if(ORVANDEL_X86)
  set(ORVANDEL_SIMD_LEVELS baseline avx2 avx512)
  target_compile_definitions(orvandel_options INTERFACE ORVANDEL_X86_LEVELS)
else()
  set(ORVANDEL_SIMD_LEVELS baseline)
endif()

if(MSVC)
  set(orvandel_simd_options /O2)
  set(orvandel_simd_options_avx2 /arch:AVX2)
  set(orvandel_simd_options_avx512 /arch:AVX512)
else()
  # Optimised whatever the build type. Roots and comparisons never trap or set errno here; that lets loops with them
  # become vector code.
  set(orvandel_simd_options -O3 -fno-math-errno -fno-trapping-math)
  set(orvandel_simd_options_avx2 -mavx2)
  set(orvandel_simd_options_avx512 -mavx512f -mavx512bw -mavx512dq -mavx512vl -mprefer-vector-width=512)
endif()

# orvandel_add_kernels(<target> <name>): compiles <name>.simd.h of the folder once a level. All of them, as target:level
# entries, end up in the global property ORVANDEL_KERNELS, for the tests that look at the objects.
function(orvandel_add_kernels target name)
  file(RELATIVE_PATH header ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR}/${name}.simd.h)
  foreach(level IN LISTS ORVANDEL_SIMD_LEVELS)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}_${level}.cpp)
    file(CONFIGURE OUTPUT ${source} @ONLY CONTENT
      "#define ORVANDEL_SIMD_NAMESPACE simd_@level@\n#include \"@header@\"\n")
    target_sources(${target} PRIVATE ${source})
    set_source_files_properties(${source} PROPERTIES
      COMPILE_OPTIONS "${orvandel_simd_options};${orvandel_simd_options_${level}}"
      SKIP_UNITY_BUILD_INCLUSION ON)
    set_property(GLOBAL APPEND PROPERTY ORVANDEL_KERNELS ${target}:${name}:${level})
  endforeach()
endfunction()
