# Fails if a library contains a QStringLiteral or a QByteArrayLiteral. The characters of these are in the library's
# read-only data, so a program that keeps such a text crashes once the library is unloaded. The compiler keeps each in an
# object that Qt's macros name qstring_literal or qbytearray_literal.
# cmake -DNM=nm "-DLIBRARIES=file..." -P no_text_literals.cmake
foreach(library IN LISTS LIBRARIES)
    execute_process(COMMAND ${NM} ${library} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    if(NOT symbols MATCHES " [bdr] ")
        message(FATAL_ERROR "${library}: no local symbols; the library is stripped, so literals cannot be found")
    endif()
    if(symbols MATCHES "[^\n]*(qstring|qbytearray)_literal[^\n]*")
        message("${library}: contains a text literal: ${CMAKE_MATCH_0}") # an error would be wrapped
        message(SEND_ERROR "use ownText(), emptyText or QLatin1String instead")
    endif()
endforeach()
