# SPDX-License-Identifier: MIT
# What the tests of the installed library share.

# Runs a command; the test fails with its output when the command does.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# Fails unless the two lists hold the same items.
function(expect_same what actual expected)
    set(missing ${expected})
    list(REMOVE_ITEM missing ${actual})
    set(surplus ${actual})
    list(REMOVE_ITEM surplus ${expected})
    list(JOIN missing "\n  " missing)
    list(JOIN surplus "\n  " surplus)
    if(missing OR surplus)
        message(FATAL_ERROR "${what} differ.\nMissing:\n  ${missing}\nNot on the list:\n  ${surplus}")
    endif()
endfunction()

# The lines of a list file whose condition holds; "media:" before a line asks for the media layer.
function(read_list file variable)
    file(STRINGS ${file} lines)
    set(items)
    foreach(line IN LISTS lines)
        if(line MATCHES "^#|^$")
            continue()
        endif()
        if(line MATCHES "^media: *(.*)$")
            if(NOT MEDIA)
                continue()
            endif()
            set(line ${CMAKE_MATCH_1})
        endif()
        list(APPEND items "${line}")
    endforeach()
    set(${variable} "${items}" PARENT_SCOPE)
endfunction()
