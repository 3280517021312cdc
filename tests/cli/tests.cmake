# tests of the program as a user runs it: rakova_test(name source LIBS ...)
if(KELVARA_ROOT)
    return() # the texts and the status codes expected here are those of the reference implementation
endif()
