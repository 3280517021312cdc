# tests of the examples, built as files of this project and not of an installed one
add_executable(cachecopy ${PROJECT_SOURCE_DIR}/examples/cachecopy.cpp ${PROJECT_SOURCE_DIR}/examples/copy.cpp
    examples/smallcache.cpp)
target_link_libraries(cachecopy PRIVATE rakova_primitives rakova_main)
rakova_test(cachecopy_test examples/cachecopy_test.cpp)
rakova_test_file(cachecopy_test RAKOVA cachecopy)
