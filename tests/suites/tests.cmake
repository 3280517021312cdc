# tests of the suites, linked with all of them: rakova_test(name source LIBS ...)
if(KELVARA_ROOT)
    return() # what a function writes is known of the reference implementation alone
endif()

rakova_test(measure_test suites/measure_test.cpp LIBS rakova_primitives)
target_include_directories(measure_test PRIVATE ${CMAKE_SOURCE_DIR}/kelvc/src)
rakova_test(cperftest_test suites/cperftest_test.cpp LIBS rakova_suites)
rakova_test(registration_test suites/registration_test.cpp LIBS rakova_suites)
target_compile_definitions(registration_test PRIVATE SUITE_TESTS="${CMAKE_CURRENT_SOURCE_DIR}/suites")

# ---- the checks that hold for all suites ------------------------------------------------

add_library(suitetest STATIC suites/suitetest.cpp suites/spy.cpp)
target_link_libraries(suitetest PUBLIC rakova_primitives GTest::gtest ${CMAKE_DL_LIBS})
# Objects, not an archive: nothing refers to the checks that every registration runs through.
add_library(suitechecks OBJECT suites/suitechecks.cpp)
target_link_libraries(suitechecks PUBLIC suitetest)
rakova_test(suitetest_test suites/suitetest_test.cpp LIBS suitechecks suitetest)

foreach(suite
        addblk avs blockdiff deblocking denoise dv dvpicture genscale h263picture h26xbits huffman
        idct interpolate luma8x8 motioncompensation motionestimation mpeg4bits mpeg4picture
        mpeg4quantiser mpeg4warp nv12 quantise reconstruct reconstructstrip scan timvcsad transform
        transformh264 variance vc1blocks vc1deblocking vc1interpolate wholepicture)
    rakova_test(${suite}_test suites/${suite}_test.cpp LIBS suitechecks suitetest rakova_suites)
endforeach()
target_sources(blockdiff_test PRIVATE suites/blockdiffspies.cpp)
rakova_test(codetables_test suites/codetables_test.cpp LIBS rakova_suites)
rakova_test(deblockingdata_test suites/deblockingdata_test.cpp LIBS suitetest rakova_suites)

# ---- the program with all suites ----------------------------------------------------------

rakova_test(wholeprogram_test suites/wholeprogram_test.cpp LIBS rakova_suites)
rakova_test_file(wholeprogram_test RAKOVA rakova)
rakova_test(wholelist_test suites/wholelist_test.cpp LIBS rakova_suites)
rakova_test_file(wholelist_test RAKOVA rakova)
rakova_test_file(wholelist_test KELVARA_LIB_KELVC kelvc)
