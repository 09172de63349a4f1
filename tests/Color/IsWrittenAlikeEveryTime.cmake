# SPDX-License-Identifier: MIT
# Writes the table of maximum chromas once more and compares it with the one in the library.
execute_process(COMMAND ${GENERATOR} ${WORK} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${WORK} ${WRITTEN} COMMAND_ERROR_IS_FATAL ANY)
foreach(arguments IN ITEMS "" "/no/such/folder/table.cpp" "one;two")
    execute_process(COMMAND ${GENERATOR} ${arguments} RESULT_VARIABLE result ERROR_QUIET)
    if(result EQUAL 0)
        message(FATAL_ERROR "The generator accepts the arguments '${arguments}'")
    endif()
endforeach()
