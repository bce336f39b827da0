# Installs into one folder and moves it to another, where all other tests find it. The tree is complete, and contains no
# path of this machine.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

file(REMOVE_RECURSE ${SCRATCH_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${SCRATCH_DIR}/first --strip)
file(RENAME ${SCRATCH_DIR}/first ${PREFIX})

# All of our headers, and the generated ones.
file(GLOB headers RELATIVE ${SOURCE_DIR}/include ${SOURCE_DIR}/include/*/*.h)
list(TRANSFORM headers PREPEND ${INCLUDE_DIR}/)

foreach(file IN ITEMS
        ${LIB_DIR}/libReportBase${SUFFIX}.so ${LIB_DIR}/libTavikAppStartUp${SUFFIX}.so
        ${LIB_DIR}/libTunerDocuments${SUFFIX}.so ${LIB_DIR}/libTunerProperties${SUFFIX}.so
        ${LIB_DIR}/libReportBase${SUFFIX}.so.1 ${LIB_DIR}/libTavikAppStartUp${SUFFIX}.so.1
        ${LIB_DIR}/libTunerDocuments${SUFFIX}.so.1 ${LIB_DIR}/libTunerProperties${SUFFIX}.so.1
        ${LIB_DIR}/cmake/${PACKAGE}/${PACKAGE}Config.cmake
        ${LIB_DIR}/cmake/${PACKAGE}/${PACKAGE}ConfigVersion.cmake
        ${LIB_DIR}/cmake/${PACKAGE}/${PACKAGE}Targets.cmake
        ${LIB_DIR}/pkgconfig/reportbase${SUFFIX}.pc ${LIB_DIR}/pkgconfig/tavikappstartup${SUFFIX}.pc
        ${LIB_DIR}/pkgconfig/tunerproperties${SUFFIX}.pc ${LIB_DIR}/pkgconfig/tunerdocuments${SUFFIX}.pc
        ${BIN_DIR}/tunerproperties
        ${MAN_DIR}/man1/tunerproperties.1
        ${DATA_DIR}/bash-completion/completions/tunerproperties
        ${DATA_DIR}/fish/vendor_completions.d/tunerproperties.fish
        ${ZSH_DIR}/_tunerproperties
        ${headers}
        ${INCLUDE_DIR}/jobxml/Export.h ${INCLUDE_DIR}/jobxml/Version.h
        ${INCLUDE_DIR}/reportbase/Export.h ${INCLUDE_DIR}/tavikappstartup/Export.h
        ${INCLUDE_DIR}/tunerdocuments/Export.h
        ${DATA_DIR}/tunerproperties/tuner-properties.xsd ${DATA_DIR}/tunerproperties/model.json
        ${DATA_DIR}/tunerproperties/tuner-properties-author.xsd
        ${DATA_DIR}/tunerproperties/tuner-properties.schema.json
        ${DATA_DIR}/tunerproperties-1/translations/TunerProperties_de.qm
        ${DATA_DIR}/tunerproperties-1/translations/TunerProperties_en.qm
        ${DOC_DIR}/SECURITY.md
        ${DOC_DIR}/examples/CMakeLists.txt ${DOC_DIR}/examples/roundtrip.cpp ${DOC_DIR}/examples/receiver.xml)
    if(NOT EXISTS ${PREFIX}/${file})
        message(FATAL_ERROR "${file} is not installed")
    endif()
endforeach()

# Sanitizers and coverage add the paths of sources and of counts to instrumented files.
file(GLOB_RECURSE installed ${PREFIX}/*)
foreach(file IN LISTS installed)
    file(READ ${file} beginning LIMIT 4 HEX)
    if(INSTRUMENTED AND beginning STREQUAL "7f454c46")
        continue()
    endif()
    foreach(path IN ITEMS ${SOURCE_DIR} ${BUILD_DIR} ${SCRATCH_DIR})
        execute_process(COMMAND grep --quiet --fixed-strings --text -e ${path} ${file} RESULT_VARIABLE status)
        if(NOT status EQUAL 1)
            message(FATAL_ERROR "${file} contains ${path}")
        endif()
    endforeach()
endforeach()
