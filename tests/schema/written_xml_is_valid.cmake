# Everything that the tests have written while validating conforms to the schema, and is a sufficient number of
# documents.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/validate.cmake)

set(classes
    TunerProperties StartupModes BandwidthSelection Component Node ValueItem ValueBoolean ValueFloat ValueInt ValueInt64
    ValueNumericFloat ValueNumericInt ValueNumericInt64 ValueSelection SelectionItem ValueString ValueStringList
    StringItem)

# Documents of a former build do not count.
function(only_new list_name)
    set(new)
    foreach(one IN LISTS ${list_name})
        set(is_new TRUE)
        foreach(library IN LISTS LIBRARIES)
            if(NOT ${one} IS_NEWER_THAN ${library})
                set(is_new FALSE)
            endif()
        endforeach()
        if(is_new)
            list(APPEND new ${one})
        endif()
    endforeach()
    set(${list_name} ${new} PARENT_SCOPE)
endfunction()

# Only the folders of existing tests: a removed test may have left its folder. A file is named by its class and its
# content, so a document that several tests write counts once.
set(documents)
set(names)
foreach(writer IN LISTS WRITERS)
    file(GLOB files ${WRITTEN_XML_DIR}/${writer}/*.xml)
    only_new(files)
    foreach(file IN LISTS files)
        get_filename_component(name ${file} NAME)
        if(NOT name IN_LIST names)
            list(APPEND names ${name})
            list(APPEND documents ${file})
        endif()
    endforeach()
endforeach()

# If these are missing, it is not that the tests write less than they did, but that it is not kept, or not all were run.
set(advice "since the libraries were built; run all tests, and look into tests/WrittenXml.cpp if that does not help")
list(LENGTH documents count)
if(count LESS FEWEST)
    message(FATAL_ERROR "The tests have left ${count} documents, and not ${FEWEST} or more, ${advice}")
endif()
foreach(class IN LISTS classes)
    if(NOT "${names}" MATCHES "(^|;)${class}\\.")
        message(FATAL_ERROR "The tests have left no ${class} ${advice}")
    endif()
endforeach()
set(examples ${documents})
list(FILTER examples INCLUDE REGEX "/tst_Examples/TunerProperties\\.")
list(LENGTH examples example_count)
if(NOT example_count EQUAL 5)
    message(FATAL_ERROR
        "tst_Examples has left ${example_count} documents, and not one for each of 5 examples, ${advice}")
endif()

# What the tests of the example programs have left.
set(left ${FILES})
only_new(left)
if(NOT "${left}" STREQUAL "${FILES}")
    message(FATAL_ERROR "Of ${FILES} the tests have left only ${left} ${advice}")
endif()

validate(${documents} ${left})
message(STATUS "${count} documents are valid")
