# The README's example changes what it describes, and nothing else, and reports both kinds of failure.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${SCRATCH_DIR})
file(MAKE_DIRECTORY ${SCRATCH_DIR})

function(run expected_status)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status ERROR_VARIABLE errors)
    if(NOT status EQUAL expected_status)
        message(FATAL_ERROR "'${ARGN}' ended with ${status} instead of ${expected_status}:\n${errors}")
    endif()
    set(errors "${errors}" PARENT_SCOPE)
endfunction()

function(expect_once text part)
    string(FIND "${text}" "${part}" first)
    string(FIND "${text}" "${part}" last REVERSE)
    if(first EQUAL -1 OR NOT first EQUAL last)
        message(FATAL_ERROR "'${part}' does not occur exactly once in\n${text}")
    endif()
endfunction()

# What is expected is the document as the tool writes it, with the two changes made by hand.
run(0 ${TOOL} convert ${DOCUMENT} ${SCRATCH_DIR}/before.xml)
file(READ ${SCRATCH_DIR}/before.xml expected)
set(one_tuner " quantity=\"2\"")
set(fixed_preselector "<Component type=\"Preselector\" name=\"preselector\" displayName=\"Preselector\" optional=\"false\">")
foreach(part IN ITEMS one_tuner fixed_preselector)
    expect_once("${expected}" "${${part}}")
endforeach()
string(REPLACE "${one_tuner}" " quantity=\"3\"" expected "${expected}")
string(REPLACE "${fixed_preselector}"
    "<Component type=\"Preselector\" name=\"preselector\" displayName=\"Preselector\" optional=\"true\">"
    expected "${expected}")

run(0 ${PROGRAM} ${DOCUMENT} ${SCRATCH_DIR}/after.xml)
file(READ ${SCRATCH_DIR}/after.xml changed)
if(NOT changed STREQUAL expected)
    message(FATAL_ERROR "the example wrote\n${changed}\ninstead of\n${expected}")
endif()

# A file that is not well formed: the place, and the reason.
file(WRITE ${SCRATCH_DIR}/receiver.xml "<TunerProperties Version=\"1.1\">\n<Component>\n")
run(1 ${PROGRAM} ${SCRATCH_DIR}/receiver.xml ${SCRATCH_DIR}/none.xml)
if(NOT errors MATCHES "^readme_example: [^\n]*/receiver\\.xml:3:[0-9]+: [^\n]+\n$")
    message(FATAL_ERROR "a truncated file is reported as\n${errors}")
endif()

# A document in which something is missing: the exception's text.
string(REPLACE " type=\"Receiver\"" "" incomplete "${expected}")
file(WRITE ${SCRATCH_DIR}/receiver.xml "${incomplete}")
run(1 ${PROGRAM} ${SCRATCH_DIR}/receiver.xml ${SCRATCH_DIR}/none.xml)
if(NOT errors STREQUAL "readme_example: TunerProperties: Please set type properly.\n")
    message(FATAL_ERROR "an incomplete document is reported as\n${errors}")
endif()

if(EXISTS ${SCRATCH_DIR}/none.xml)
    message(FATAL_ERROR "a failure has left a file")
endif()
