# The examples conform to both schemas after the library has written them. The originals also use the other ways to write
# a document that readers accept; they conform to the schema for authors as they are.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/validate.cmake)

file(REMOVE_RECURSE ${SCRATCH_DIR})
file(MAKE_DIRECTORY ${SCRATCH_DIR})
file(GLOB examples ${EXAMPLES_DIR}/*.xml)
list(LENGTH examples count)
if(NOT count EQUAL 5)
    message(FATAL_ERROR "There are ${count} examples in ${EXAMPLES_DIR} instead of 5")
endif()
set(written)
foreach(example IN LISTS examples)
    get_filename_component(name ${example} NAME)
    execute_process(
        COMMAND ${TOOL} convert ${example} ${SCRATCH_DIR}/${name}
        RESULT_VARIABLE status ERROR_VARIABLE said)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "converting ${example} ended with ${status}:\n${said}")
    endif()
    list(APPEND written ${SCRATCH_DIR}/${name})
endforeach()
validate_with(${SCHEMA} ${written})
validate_with(${AUTHOR_SCHEMA} ${written} ${examples})
