# tests of what cmake --install leaves
if(RAKOVA_SANITIZE)
    return() # what is installed would ask every program for the sanitizers
endif()

set(package ${CMAKE_CURRENT_BINARY_DIR}/package)
set(package_prefix ${package}/prefix)
add_test(NAME Package.IsInstalled COMMAND ${CMAKE_COMMAND} --install ${CMAKE_BINARY_DIR} --prefix ${package_prefix})
set_tests_properties(Package.IsInstalled PROPERTIES FIXTURES_SETUP package)

# package_test(name pattern command...): shows the pattern, with the package installed
function(package_test name pattern)
    add_test(NAME Package.${name} COMMAND ${ARGN})
    set_tests_properties(Package.${name} PROPERTIES FIXTURES_REQUIRED package PASS_REGULAR_EXPRESSION ${pattern})
endfunction()

package_test(GivesAProgramItsMain "-OK +sampleAlpha"
    ${CMAKE_CTEST_COMMAND} --build-and-test ${CMAKE_CURRENT_SOURCE_DIR}/package ${package}/build
    --build-generator ${CMAKE_GENERATOR}
    --build-options -DRakova_ROOT=${package_prefix} -DRAKOVA_SOURCE=${CMAKE_SOURCE_DIR} -DPRIMITIVES=${RAKOVA_LIBRARY}
                    -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
    --test-command ${package}/build/program -B -fsampleAlpha)
package_test(BareProgramStarts "Rakova 2.0" ${package_prefix}/bin/rakova_bare -v)

if(RAKOVA_LIBRARY AND NOT KELVARA_ROOT)
    package_test(ProgramHasARunpath "RUNPATH.*[$]ORIGIN/../lib" ${CMAKE_READELF} -d ${package_prefix}/bin/rakova)
    set(start ${package_prefix}/bin/rakova -B -fnone)
    package_test(ProgramFindsItsLibraries "libkelvc.so, 2.0 ${KELVARA_ARCH}," ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${start})
    package_test(ProgramTakesOtherLibraries "libkelvc.so, 2.0 v2,"
        ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${CMAKE_CURRENT_BINARY_DIR}/kelvara_v2 ${start})
endif()
