execute_process(COMMAND "${PROGRAM}" OUTPUT_VARIABLE printed ERROR_VARIABLE printed
    COMMAND_ERROR_IS_FATAL ANY)
file(READ "${EXPECTED}" expected)
if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "The README promises\n${expected}\nbut its program prints\n${printed}")
endif()
