# golden tests of the reference implementation: rakova_test(name source LIBS ...)
if(KELVARA_ROOT)
    return() # the library under test is somebody else's
endif()

rakova_test(kelvara_core_test kelvara/core_test.cpp LIBS kelcore)
rakova_test(kelvara_processor_test kelvara/processor_test.cpp LIBS kelcore)
target_sources(kelvara_processor_test PRIVATE ${CMAKE_SOURCE_DIR}/kelvara/src/core/processor.cpp)
rakova_test(kelvara_kels_test kelvara/kels_test.cpp LIBS kels)
foreach(subject
        avsmacroblock avstransform bits blocks cavlcchroma compensation dct248 dctransform
        deblocking denoise differences dvpicture edges h261vlc h263bits h263filters h263quant
        h263resampling h263sampling h263vlc idct interleaved interpolate interpolateinterleaved
        intraprediction mpeg4dc mpeg4filter mpeg4motion mpeg4quant mpeg4recon mpeg4sprite
        mpeg4tables mpeg4vlc mpeg4warp quantise quantise4x4 quantise8x8 reconstruction residual4x4
        sad sadn satd scalelevels scan sumsdiff switching transform4x4 transform8x8 turnedpicture
        variance vc1deblocking vc1interpolate vc1picture vc1quant vc1smooth vc1transform vlctable
        weightedprediction)
    rakova_test(kelvara_${subject}_test kelvara/${subject}_test.cpp LIBS kelvc)
endforeach()

# ---- exports and headers --------------------------------------------------------

set(kelvara_include ${CMAKE_SOURCE_DIR}/kelvara/include)
rakova_test(kelvara_exports_test kelvara/exports_test.cpp)
target_compile_definitions(kelvara_exports_test PRIVATE KELVARA_INCLUDE="${kelvara_include}")
foreach(lib kelcore kels keli kelvc)
    string(TOUPPER ${lib} upper)
    rakova_test_file(kelvara_exports_test KELVARA_LIB_${upper} ${lib})
endforeach()

foreach(header
        kelcore keli kels keltypes kelvc kelvc_avs kelvc_blocks kelvc_coeffs kelvc_deblocking
        kelvc_dv kelvc_dvpicture kelvc_h263 kelvc_h26xbits kelvc_interleaved kelvc_interpolate
        kelvc_intra kelvc_motion kelvc_mpeg4 kelvc_mpeg4bits kelvc_picture kelvc_transform kelvc_vc1
        kelvc_vc1motion)
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
