# validate_with(schema files...): the schema accepts each of these files.
function(validate_with schema)
    set(rest ${ARGN})
    while(rest)
        # In portions, since the length of a command line is limited.
        list(SUBLIST rest 0 500 portion)
        list(LENGTH portion size)
        list(REMOVE_ITEM rest ${portion})
        execute_process(
            COMMAND ${XMLLINT} --noout --nonet --schema ${schema} ${portion}
            RESULT_VARIABLE status ERROR_VARIABLE said)
        string(REGEX MATCHALL "[^\n]+ validates\n" accepted "${said}")
        list(LENGTH accepted accepted)
        if(NOT status EQUAL 0 OR NOT accepted EQUAL size)
            string(REGEX REPLACE "[^\n]+ validates\n" "" complaints "${said}")
            message(FATAL_ERROR
                "xmllint --schema ${schema} ended with ${status} and accepted ${accepted} of ${size} files:\n${complaints}")
        endif()
    endwhile()
endfunction()
