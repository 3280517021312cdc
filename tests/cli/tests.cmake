# tests of the program as a user runs it: rakova_test(name source LIBS ...)
if(KELVARA_ROOT)
    return() # the texts and the status codes expected here are those of the reference implementation
endif()

# rakova_cli_test(name source): a test that starts RAKOVA or RAKOVA_BARE, with the helpers of cli/program.h
function(rakova_cli_test name source)
    rakova_test(${name} ${source} LIBS util) # openpty
    rakova_test_file(${name} RAKOVA rakova)
    rakova_test_file(${name} RAKOVA_BARE rakova_bare)
endfunction()

foreach(subject cfgfile console effects golden inifile keys paths program)
    rakova_cli_test(${subject}_test cli/${subject}_test.cpp)
endforeach()

# A program of the framework and one test file.
add_executable(sample cli/sample.cpp)
target_link_libraries(sample PRIVATE rakova_main)
rakova_cli_test(sample_test cli/sample_test.cpp)
rakova_test_file(sample_test SAMPLE sample)

# ---- pages ---------------------------------------------------------------------------

rakova_cli_test(docs_test cli/docs_test.cpp)
target_link_libraries(docs_test PRIVATE rakova_api)
target_compile_definitions(docs_test PRIVATE
    RAKOVA_SOURCE="${CMAKE_SOURCE_DIR}" RAKOVA_BUILD="${CMAKE_BINARY_DIR}" RAKOVA_CXX="${CMAKE_CXX_COMPILER}"
    RAKOVA_GENERATOR="${CMAKE_GENERATOR}" RAKOVA_BUILD_TYPE="${CMAKE_BUILD_TYPE}"
    KELVARA_ARCH="${KELVARA_ARCH}" OTHER_LIBRARIES="${CMAKE_CURRENT_BINARY_DIR}/kelvara_v2"
    $<$<BOOL:${RAKOVA_SANITIZE}>:RAKOVA_SANITIZE>)
add_dependencies(docs_test kelcore_v2 kels_v2 keli_v2 kelvc_v2)

# ---- failures and bad input -----------------------------------------------------------

add_executable(faulty cli/faulty.cpp)
target_link_libraries(faulty PRIVATE rakova_main)
foreach(subject faults killed badkeys badfiles badanswers fulldisk)
    rakova_cli_test(${subject}_test cli/${subject}_test.cpp)
    rakova_test_file(${subject}_test FAULTY faulty)
endforeach()

# ---- other builds of the library ----------------------------------------------------

# kelvara_without(lib case functions...): lib<lib>.so in a folder of its own, from the same objects, with the functions
# (patterns) hidden; the other libraries are those of the build.
function(kelvara_without lib case)
    set(dir ${CMAKE_CURRENT_BINARY_DIR}/kelvara_without_${case})
    list(JOIN ARGN "; " hidden)
    file(WRITE ${dir}/hidden.map "{ local: ${hidden}; };\n")
    add_library(${lib}_without_${case} SHARED $<TARGET_OBJECTS:${lib}>)
    set_target_properties(${lib}_without_${case} PROPERTIES
        OUTPUT_NAME ${lib} LIBRARY_OUTPUT_DIRECTORY ${dir} LINKER_LANGUAGE CXX)
    target_link_options(${lib}_without_${case} PRIVATE LINKER:--version-script=${dir}/hidden.map)
    string(TOUPPER ${case} upper)
    target_compile_definitions(libraries_test PRIVATE LIBRARIES_WITHOUT_${upper}="${dir}")
    add_dependencies(libraries_test ${lib}_without_${case})
endfunction()

if(NOT KELVARA_ARCH STREQUAL v2) # two builds that differ
    rakova_cli_test(libraries_test cli/libraries_test.cpp)
    target_compile_definitions(libraries_test PRIVATE
        KELVARA_ARCH="${KELVARA_ARCH}" LIBRARIES_V2="${CMAKE_CURRENT_BINARY_DIR}/kelvara_v2")
    add_dependencies(libraries_test kelcore_v2 kels_v2 keli_v2 kelvc_v2)
    kelvara_without(kelvc sadn keliSAD*xN_* keliSAD*xNI_*)
    kelvara_without(kelvc version kelvcGetLibVersion)
    kelvara_without(kelcore core kel*)
    kelvara_without(kelcore threads kelSetNumThreads)
endif()

# ---- an installed library in place of the reference implementation ---------------------

if(NOT RAKOVA_SANITIZE) # the installed libraries would ask for the sanitizers' own
    set(installed ${CMAKE_CURRENT_BINARY_DIR}/installed)
    add_test(NAME InstalledLibrary.IsLinkedByItsFolder
        COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${CMAKE_CURRENT_SOURCE_DIR}/cli/installed ${installed}
                --build-generator ${CMAKE_GENERATOR}
                --build-options -DKELVARA_ROOT=${package_prefix} -DRAKOVA_SOURCE=${CMAKE_SOURCE_DIR}
                                -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
                --test-command ${installed}/probe)
    set_tests_properties(InstalledLibrary.IsLinkedByItsFolder PROPERTIES
        FIXTURES_REQUIRED package
        PASS_REGULAR_EXPRESSION "keliSAD16x16_8u32s present.*libkelvc.so, 2.0 ${KELVARA_ARCH}"
        FAIL_REGULAR_EXPRESSION " missing")
endif()

# ---- between the two reads of the counter -----------------------------------------

# What a compiler makes of the loops counts only where it optimises: a debug build keeps everything on the stack, and
# a sanitizer puts checks of its own between the reads.
if(CMAKE_BUILD_TYPE STREQUAL Release AND CMAKE_CXX_COMPILER_ID STREQUAL GNU AND NOT RAKOVA_SANITIZE)
    rakova_cli_test(stretch_test cli/stretch_test.cpp)
    target_sources(stretch_test PRIVATE cli/stretch.cpp)
    target_compile_definitions(stretch_test PRIVATE OBJDUMP="${CMAKE_OBJDUMP}")
endif()
