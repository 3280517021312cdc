# DV: a coder, the segments that it made for the suite, and the decoder of the library under test
if(KELVARA_ROOT)
    return() # the library under test is somebody else's
endif()

set(suites ${CMAKE_SOURCE_DIR}/kelvc/src)
add_library(dvcoding STATIC
    dv/dvcodes.cpp dv/dvencoder.cpp dv/dvmodel.cpp dv/dvpictures.cpp ${suites}/dvtables.cpp)
target_include_directories(dvcoding PUBLIC dv ${suites})

add_executable(makesegments dv/makesegments.cpp)
target_link_libraries(makesegments PRIVATE dvcoding)

rakova_test(kelvara_dvsegment_test dv/dvsegment_test.cpp LIBS dvcoding kelvc)
rakova_test(kelvara_dvdamage_test dv/dvdamage_test.cpp LIBS dvcoding kelvc)
rakova_test(dvpictures_test dv/dvpictures_test.cpp LIBS dvcoding kelvc)
target_sources(dvpictures_test PRIVATE ${suites}/dvsegments.cpp)
rakova_test(kelvara_dvquantise_test dv/dvquantise_test.cpp LIBS kelvc)
rakova_test(kelvara_dct4x4_test dv/dct4x4_test.cpp LIBS kelvc)
