# A different major version is a different library, and the additions of a later minor version are still missing.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

string(REGEX MATCH "^[0-9]+" major ${VERSION})
math(EXPR next_major "${major} + 1")
foreach(wanted IN ITEMS ${next_major} 0.9 ${major}.99)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/refused_version -B ${SCRATCH_DIR}/refused_version
            -G ${GENERATOR} --fresh -DWANTED=${wanted}
            -DPACKAGE=${PACKAGE}
            -D${PACKAGE}_DIR=${PREFIX}/${LIB_DIR}/cmake/${PACKAGE}
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    string(REGEX REPLACE "[ \n]+" " " output "${output}")
    if(status EQUAL 0)
        message(FATAL_ERROR "${VERSION} is accepted as ${wanted}")
    endif()
    if(NOT output MATCHES "compatible with requested version \"${wanted}\""
       OR NOT output MATCHES "${PACKAGE}Config.cmake, version: ${VERSION} ")
        message(FATAL_ERROR "${wanted} is refused for another reason:\n${output}")
    endif()
endforeach()
