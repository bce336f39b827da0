# A release build is hardened: its ELF headers and compiler flags show this, and a text that is too long for its buffer
# on the stack ends the program. Without the option, the check of the ELF headers fails.
cmake_minimum_required(VERSION 3.25)

foreach(variable IN ITEMS CXXFLAGS LDFLAGS CPPFLAGS)
    unset(ENV{${variable}})
endforeach()

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(status "${status}" PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(run_well)
    run(${ARGN})
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "'${ARGN}' ended with ${status}:\n${output}")
    endif()
endfunction()

function(build hardening)
    file(REMOVE_RECURSE ${BUILD_DIR})
    run_well(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${BUILD_DIR} -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_BUILD_TYPE=Release -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
        -DBUILD_TESTING=OFF -DTUNERPROPERTIES_HARDENING=${hardening}
        -DCMAKE_PROJECT_TunerProperties_INCLUDE=${CMAKE_CURRENT_FUNCTION_LIST_DIR}/with_probe.cmake)
    run_well(${CMAKE_COMMAND} --build ${BUILD_DIR} --target probe)
endfunction()

build(ON)
set(probe ${BUILD_DIR}/bin/probe)
run_well(${CHECK} --hardened ${probe} ${BUILD_DIR}/lib)
run_well(${probe} short)
string(REPEAT "long" 64 long)
run(${probe} ${long})
if(status EQUAL 0 OR NOT output MATCHES "buffer overflow detected")
    message(FATAL_ERROR "a text that is too long ended with ${status}:\n${output}")
endif()

# Flags that ELF headers do not show.
file(READ ${BUILD_DIR}/compile_commands.json commands)
string(JSON count LENGTH "${commands}")
math(EXPR last "${count} - 1")
foreach(index RANGE ${last})
    string(JSON command GET "${commands}" ${index} command)
    foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -D_FORTIFY_SOURCE=2 -Wformat-security)
        string(FIND "${command}" " ${flag} " found)
        if(found EQUAL -1)
            message(FATAL_ERROR "${flag} is missing in: ${command}")
        endif()
    endforeach()
endforeach()

build(OFF)
run(${CHECK} --hardened ${probe} ${BUILD_DIR}/lib)
if(status EQUAL 0)
    message(FATAL_ERROR "the check passes without hardening as well:\n${output}")
endif()
