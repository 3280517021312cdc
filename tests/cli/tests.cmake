# tests of the program as a user runs it: rakova_test(name source LIBS ...)
if(KELVARA_ROOT)
    return() # the texts and the status codes expected here are those of the reference implementation
endif()

# ---- between the two reads of the counter -----------------------------------------

# What a compiler makes of the loops counts only where it optimises: a debug build keeps everything on the stack, and
# a sanitizer puts checks of its own between the reads.
if(CMAKE_BUILD_TYPE STREQUAL Release AND CMAKE_CXX_COMPILER_ID STREQUAL GNU AND NOT RAKOVA_SANITIZE)
    rakova_test(stretch_test cli/stretch_test.cpp)
    target_sources(stretch_test PRIVATE cli/stretch.cpp)
    target_compile_definitions(stretch_test PRIVATE
        RAKOVA="$<TARGET_FILE:rakova>" OBJDUMP="${CMAKE_OBJDUMP}")
    add_dependencies(stretch_test rakova)
endif()
