# Runs INSPECT with ARGUMENTS (separated by "|") and fails unless its output
# equals the file EXPECTED.
string(REPLACE "|" ";" arguments "${ARGUMENTS}")
execute_process(COMMAND ${INSPECT} ${arguments}
    OUTPUT_VARIABLE actual
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "ombrel-inspect exited with ${status}")
endif()
file(READ ${EXPECTED} expected)
if(NOT actual STREQUAL expected)
    message(FATAL_ERROR "ombrel-inspect printed:\n${actual}\nexpected:\n${expected}")
endif()
