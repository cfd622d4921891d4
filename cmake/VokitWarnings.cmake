# vokit_warnings(target): the warnings that all our own code is built with.
function(vokit_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>
        $<$<BOOL:${VOKIT_WERROR}>:-Werror>)
endfunction()
