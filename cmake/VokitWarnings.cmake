# vokit_warnings(target): the warnings that all our own code is built with.
function(vokit_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>
        $<$<BOOL:${VOKIT_WERROR}>:-Werror>)
endfunction()

# vokit_unloadable(target): lets the library be unloaded. Unique symbols, as tables of constants in
# headers would be, keep it in the process for ever. clang-tidy doesn't know the option of GCC's.
function(vokit_unloadable target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT CMAKE_CXX_CLANG_TIDY)
        target_compile_options(${target} PRIVATE -fno-gnu-unique)
    endif()
endfunction()
