# run(command...): runs it and sets output; ends the test with what was printed if it fails.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE error)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGV}\n${output}${error}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()
