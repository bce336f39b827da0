# The installed files are complete, work from another place, and find their catalogues there and nowhere else.
cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "'${ARGN}' ended with ${status}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${SCRATCH_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${SCRATCH_DIR}/first)
file(RENAME ${SCRATCH_DIR}/first ${SCRATCH_DIR}/moved)
set(prefix ${SCRATCH_DIR}/moved)

foreach(file
        ${LIB_DIR}/libReportBase.so.1 ${LIB_DIR}/libTavikAppStartUp.so.1 ${LIB_DIR}/libTunerProperties.so.1
        ${INCLUDE_DIR}/jobxml/TunerProperties.h ${INCLUDE_DIR}/jobxml/Export.h
        ${INCLUDE_DIR}/reportbase/IRGObject.h ${INCLUDE_DIR}/reportbase/Export.h
        ${INCLUDE_DIR}/tavikappstartup/TranslationCenter.h ${INCLUDE_DIR}/tavikappstartup/Export.h
        ${DATA_DIR}/tunerproperties/tuner-properties.xsd
        ${DATA_DIR}/tunerproperties/translations/TunerProperties_de.qm
        ${DATA_DIR}/tunerproperties/translations/TunerProperties_en.qm)
    if(NOT EXISTS ${prefix}/${file})
        message(FATAL_ERROR "${file} is not installed")
    endif()
endforeach()

# The tool finds its libraries beside it.
run(${prefix}/${BIN_DIR}/tunerproperties validate ${EXAMPLE})

# The libraries of the moved tree in place of those of the build tree: the names are shown in German from there.
run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/${LIB_DIR} ${NAMES_TEST} namesAreShownInTheLanguageThatIsInstalled)

# Without its catalogues the same test fails, so it was those that it found.
file(REMOVE_RECURSE ${prefix}/${DATA_DIR}/tunerproperties/translations)
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/${LIB_DIR} ${NAMES_TEST}
        namesAreShownInTheLanguageThatIsInstalled
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
if(status EQUAL 0)
    message(FATAL_ERROR "names are shown in German without the installed catalogues")
endif()
