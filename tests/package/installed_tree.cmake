# The moved tree works, and finds its catalogs there and nowhere else.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

# The tool contains the libraries: it works without the other files of the tree.
set(alone ${SCRATCH_DIR}/alone)
file(REMOVE_RECURSE ${alone})
file(COPY ${PREFIX}/${BIN_DIR}/tunerproperties DESTINATION ${alone})
run(${alone}/tunerproperties validate ${EXAMPLE})
run(${alone}/tunerproperties schema)
foreach(format IN ITEMS author json model)
    run(${alone}/tunerproperties schema --format ${format})
endforeach()

# A copy of the tree, since its catalogs will be removed. Its libraries replace those of the build tree.
set(tree ${SCRATCH_DIR}/catalogs)
file(REMOVE_RECURSE ${tree})
file(COPY ${PREFIX}/${LIB_DIR} ${PREFIX}/${DATA_DIR} DESTINATION ${tree})
set(show_names ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${tree}/${LIB_DIR}
    ${NAMES_TEST} tst_Names namesAreShownInTheLanguageThatIsInstalled)
run(${show_names})

# Without its catalogs the same test fails, so it had found those.
file(REMOVE_RECURSE ${tree}/${DATA_DIR}/tunerproperties-1/translations)
execute_process(COMMAND ${show_names} RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
if(status EQUAL 0)
    message(FATAL_ERROR "names are shown in German without the installed catalogs")
endif()
