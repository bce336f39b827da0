# The moved tree works, and finds its catalogs there and nowhere else.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

# The tool finds its libraries relative to its own folder.
expect_libraries_from(${PREFIX}/${LIB_DIR} ${PREFIX}/${BIN_DIR}/tunerproperties)
run(${PREFIX}/${BIN_DIR}/tunerproperties validate ${EXAMPLE})

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
