file(STRINGS "${OBJECTS}" objects)
list(APPEND objects "${PROBE}") # first in one order, last in the other
if(ORDER STREQUAL "REVERSE")
    list(REVERSE objects)
endif()
separate_arguments(flags UNIX_COMMAND "${FLAGS}")
execute_process(COMMAND "${COMPILER}" ${flags} ${objects} "${QTCORE}" "${LIBCRYPTO}" -o "${PROGRAM}"
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${PROGRAM}" COMMAND_ERROR_IS_FATAL ANY)
