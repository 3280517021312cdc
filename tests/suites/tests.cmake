# tests of the suites, linked with all of them: rakova_test(name source LIBS ...)
if(KELVARA_ROOT)
    return() # what a function writes is known of the reference implementation alone
endif()
