# Runs INSPECT on INPUT and fails unless its output equals the file EXPECTED.
execute_process(COMMAND ${INSPECT} ${INPUT}
    OUTPUT_VARIABLE actual
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "ombrel-inspect exited with ${status}")
endif()
file(READ ${EXPECTED} expected)
if(NOT actual STREQUAL expected)
    message(FATAL_ERROR "ombrel-inspect printed:\n${actual}\nexpected:\n${expected}")
endif()
