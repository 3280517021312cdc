# RakovaTargets.cmake - settings that all targets share.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2") # assertions stay on

add_compile_options(-Wall -Wextra -Wpedantic)
if(RAKOVA_WERROR)
    add_compile_options(-Werror)
endif()
if(RAKOVA_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
if(RAKOVA_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# The programs find their shared libraries by RUNPATH, so that LD_LIBRARY_PATH goes first.
add_link_options(-Wl,--enable-new-dtags)
