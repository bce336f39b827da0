# refuse.cmake -D WORDS=REGEX -- COMPILER OPTION... FILE
#
# The file compiles with -DCORRECTED. Without it, the compiler refuses the file and its first error matches WORDS, so that
# the file cannot be refused for another reason. A different mistake does not match WORDS.
cmake_minimum_required(VERSION 3.25)

set(command)
math(EXPR last "${CMAKE_ARGC} - 1")
set(separator_seen FALSE)
foreach(index RANGE ${last})
    if(separator_seen)
        list(APPEND command "${CMAKE_ARGV${index}}")
    elseif(CMAKE_ARGV${index} STREQUAL "--")
        set(separator_seen TRUE)
    endif()
endforeach()
list(POP_BACK command file)

file(READ "${file}" source)
if(NOT source MATCHES "\n#if(n?def) CORRECTED\n")
    message(FATAL_ERROR "${file} has no corrected form: write '#ifdef CORRECTED' or '#ifndef CORRECTED' at the mistake")
endif()

set(ENV{LC_ALL} C)

# Sets `first_error` to the text of the compiler's first error without its location, empty if it reports none.
function(compile)
    execute_process(COMMAND ${command} ${ARGN} "${file}" RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE output)
    set(first_error "")
    if(output MATCHES "(^|\n)[^\n]*[0-9]: (fatal )?error: ([^\n]*)")
        set(first_error "${CMAKE_MATCH_3}")
    endif()
    set(status "${status}" PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
    set(first_error "${first_error}" PARENT_SCOPE)
endfunction()

compile(-DCORRECTED)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${file} does not compile with CORRECTED either:\n${output}")
endif()

compile()
if(status EQUAL 0)
    message(FATAL_ERROR "${file} compiles, but must not")
endif()
if(NOT first_error MATCHES "${WORDS}")
    message(FATAL_ERROR "the first error does not match '${WORDS}':\n${output}")
endif()

compile(-DCORRECTED -include ${CMAKE_CURRENT_LIST_DIR}/unrelated_mistake.h)
if(status EQUAL 0 OR first_error STREQUAL "" OR first_error MATCHES "${WORDS}")
    message(FATAL_ERROR "an unrelated mistake passes as the intended one:\n${output}")
endif()
