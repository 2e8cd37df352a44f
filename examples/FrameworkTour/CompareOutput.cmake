# Runs PROGRAM, under EMULATOR where it needs one, and compares what it prints, kept in the file PRINTED, with
# the file EXPECTED. Not through a pipe: what Wine leaves running would hold that open.
execute_process(COMMAND ${EMULATOR} ${PROGRAM} OUTPUT_FILE ${PRINTED} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The program ended with ${result}.")
endif()
file(READ ${PRINTED} printed)
string(REPLACE "\r" "" printed "${printed}")
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "It printed:\n${printed}\nin place of:\n${expected}")
endif()
