# Fails if a library contains a QStringLiteral or a QByteArrayLiteral. The characters of these are in the library's
# read-only data, so a program that keeps such a text crashes once the library is unloaded.
#
# In Qt 5, the compiler keeps each in an object that Qt's macros name qstring_literal or qbytearray_literal:
# cmake -DNM=nm "-DLIBRARIES=file..." -P no_text_literals.cmake
#
# In Qt 6, a literal has no object of its own, so the sources are searched for what makes one:
# cmake "-DSOURCES=file..." -P no_text_literals.cmake
function(refuse file what)
    message("${file}: contains a text literal: ${what}") # an error would be wrapped
    message(SEND_ERROR "use ownText(), emptyText or QLatin1String instead")
endfunction()

foreach(library IN LISTS LIBRARIES)
    execute_process(COMMAND ${NM} ${library} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    if(NOT symbols MATCHES " [bdr] ")
        message(FATAL_ERROR "${library}: no local symbols; the library is stripped, so literals cannot be found")
    endif()
    if(symbols MATCHES "[^\n]*(qstring|qbytearray)_literal[^\n]*")
        refuse(${library} "${CMAKE_MATCH_0}")
    endif()
endforeach()

foreach(source IN LISTS SOURCES)
    file(READ ${source} text)
    string(REGEX REPLACE "(^|\n) *//[^\n]*" "" text "${text}")
    string(REGEX REPLACE " // [^\n]*" "" text "${text}")
    if(text MATCHES "[^\n]*(QStringLiteral|QByteArrayLiteral|QT_UNICODE_LITERAL|\"_qs|\"_qba|\"_s[^v]|\"_ba)[^\n]*")
        refuse(${source} "${CMAKE_MATCH_0}")
    endif()
endforeach()
if(NOT LIBRARIES AND NOT SOURCES)
    message(FATAL_ERROR "nothing to search")
endif()
