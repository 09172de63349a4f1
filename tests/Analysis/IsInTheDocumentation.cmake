# SPDX-License-Identifier: MIT
# The page holds, word for word, what the program prints.
execute_process(COMMAND ${REPORT} OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
file(READ ${PAGE} page)
string(FIND "${page}" "${printed}" position)
if(printed STREQUAL "" OR position EQUAL -1)
    message(FATAL_ERROR "${PAGE} does not hold:\n${printed}")
endif()
