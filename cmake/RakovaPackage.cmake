# RakovaPackage.cmake - what `cmake --install` leaves for find_package(Rakova).
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# rakova_package_library(target name): Rakova::<name>
function(rakova_package_library target name)
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
    target_compile_features(${target} PUBLIC cxx_std_17)
    install(TARGETS ${target} EXPORT RakovaTargets
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
            INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/rakova ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# rakova_package_headers(): those of this folder
function(rakova_package_headers)
    install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/rakova
            FILES_MATCHING PATTERN *.h)
endfunction()

# rakova_package_program(target): finds the libraries that are installed with it, or those of KELVARA_ROOT.
function(rakova_package_program target)
    file(RELATIVE_PATH libdir ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set(libraries $ORIGIN/${libdir})
    if(KELVARA_ROOT)
        set(libraries ${KELVARA_ROOT}/lib)
    endif()
    set_target_properties(${target} PROPERTIES INSTALL_RPATH ${libraries})
    install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# rakova_package_config(): the files of the package itself, behind all of its targets.
function(rakova_package_config)
    set(dir ${CMAKE_INSTALL_LIBDIR}/cmake/Rakova)
    configure_package_config_file(cmake/RakovaConfig.cmake.in ${PROJECT_BINARY_DIR}/RakovaConfig.cmake
                                  INSTALL_DESTINATION ${dir})
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/RakovaConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES ${PROJECT_BINARY_DIR}/RakovaConfig.cmake ${PROJECT_BINARY_DIR}/RakovaConfigVersion.cmake
            DESTINATION ${dir})
    install(EXPORT RakovaTargets NAMESPACE Rakova:: DESTINATION ${dir})
endfunction()
