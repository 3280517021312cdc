# golden tests of the reference implementation: rakova_test(name source LIBS ...)
if(KELVARA_ROOT)
    return() # the library under test is somebody else's
endif()

rakova_test(kelvara_core_test kelvara/core_test.cpp LIBS kelcore)
rakova_test(kelvara_processor_test kelvara/processor_test.cpp LIBS kelcore)
target_sources(kelvara_processor_test PRIVATE ${CMAKE_SOURCE_DIR}/kelvara/src/core/processor.cpp)
rakova_test(kelvara_kels_test kelvara/kels_test.cpp LIBS kels)
rakova_test(kelvara_sad_test kelvara/sad_test.cpp LIBS kelvc)
rakova_test(kelvara_satd_test kelvara/satd_test.cpp LIBS kelvc)
rakova_test(kelvara_sadn_test kelvara/sadn_test.cpp LIBS kelvc)
rakova_test(kelvara_sumsdiff_test kelvara/sumsdiff_test.cpp LIBS kelvc)
rakova_test(kelvara_edges_test kelvara/edges_test.cpp LIBS kelvc)
rakova_test(kelvara_deblocking_test kelvara/deblocking_test.cpp LIBS kelvc)
rakova_test(kelvara_compensation_test kelvara/compensation_test.cpp LIBS kelvc)
rakova_test(kelvara_differences_test kelvara/differences_test.cpp LIBS kelvc)
rakova_test(kelvara_variance_test kelvara/variance_test.cpp LIBS kelvc)
rakova_test(kelvara_quantise_test kelvara/quantise_test.cpp LIBS kelvc)
rakova_test(kelvara_idct_test kelvara/idct_test.cpp LIBS kelvc)
rakova_test(kelvara_dct248_test kelvara/dct248_test.cpp LIBS kelvc)
rakova_test(kelvara_vlctable_test kelvara/vlctable_test.cpp LIBS kelvc)
rakova_test(kelvara_blocks_test kelvara/blocks_test.cpp LIBS kelvc)
rakova_test(kelvara_scan_test kelvara/scan_test.cpp LIBS kelvc)
rakova_test(kelvara_transform8x8_test kelvara/transform8x8_test.cpp LIBS kelvc)

# ---- exports and headers --------------------------------------------------------

set(kelvara_include ${CMAKE_SOURCE_DIR}/kelvara/include)
rakova_test(kelvara_exports_test kelvara/exports_test.cpp)
add_dependencies(kelvara_exports_test kelcore kels keli kelvc)
target_compile_definitions(kelvara_exports_test PRIVATE
    KELVARA_INCLUDE="${kelvara_include}"
    KELVARA_LIB_KELCORE="$<TARGET_FILE:kelcore>" KELVARA_LIB_KELS="$<TARGET_FILE:kels>"
    KELVARA_LIB_KELI="$<TARGET_FILE:keli>" KELVARA_LIB_KELVC="$<TARGET_FILE:kelvc>")

foreach(header keltypes kelcore kels keli kelvc kelvc_blocks kelvc_coeffs kelvc_deblocking kelvc_motion)
    add_test(NAME KelvaraHeaders.${header}IsPlainC
        COMMAND ${CMAKE_CXX_COMPILER} -x c -std=c99 -Wall -Wextra -Wpedantic -Werror -fsyntax-only
                ${kelvara_include}/${header}.h)
endforeach()

# ---- one program, several builds --------------------------------------------------

kelvara_build(_v2 v2 ${CMAKE_CURRENT_BINARY_DIR}/kelvara_v2)

add_library(kelvc_partial SHARED kelvara/partial.cpp)
set_target_properties(kelvc_partial PROPERTIES
    OUTPUT_NAME kelvc LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/kelvara_partial)
target_include_directories(kelvc_partial PRIVATE ${kelvara_include})

add_executable(kelvara_probe kelvara/probe.cpp)
target_link_libraries(kelvara_probe PRIVATE kelcore kels keli kelvc)

rakova_test(kelvara_swap_test kelvara/swap_test.cpp)
add_dependencies(kelvara_swap_test kelvara_probe kelvc_partial kelcore_v2 kels_v2 keli_v2 kelvc_v2)
target_compile_definitions(kelvara_swap_test PRIVATE
    KELVARA_PROBE="$<TARGET_FILE:kelvara_probe>" KELVARA_ARCH="${KELVARA_ARCH}"
    KELVARA_OTHER_DIR="${CMAKE_CURRENT_BINARY_DIR}/kelvara_v2"
    KELVARA_PARTIAL_DIR="${CMAKE_CURRENT_BINARY_DIR}/kelvara_partial")
