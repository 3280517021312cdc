# tests of the suites, linked with all of them: rakova_test(name source LIBS ...)
if(KELVARA_ROOT)
    return() # what a function writes is known of the reference implementation alone
endif()

rakova_test(measure_test suites/measure_test.cpp LIBS rakova_primitives)
target_include_directories(measure_test PRIVATE ${CMAKE_SOURCE_DIR}/kelvc/src)
rakova_test(cperftest_test suites/cperftest_test.cpp LIBS rakova_suites)
rakova_test(blockdiff_test suites/blockdiff_test.cpp LIBS rakova_suites ${CMAKE_DL_LIBS})
target_sources(blockdiff_test PRIVATE suites/blockdiffspies.cpp)
rakova_test(registration_test suites/registration_test.cpp LIBS rakova_suites)
