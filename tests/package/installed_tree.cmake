# What is installed works where it was moved, and finds its catalogues there and nowhere else.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

# The tool finds its libraries from where it is.
expect_libraries_from(${PREFIX}/${LIB_DIR} ${PREFIX}/${BIN_DIR}/tunerproperties)
run(${PREFIX}/${BIN_DIR}/tunerproperties validate ${EXAMPLE})

# A copy of the tree, since its catalogues will go. Its libraries take the place of those of the build tree.
set(tree ${SCRATCH_DIR}/catalogues)
file(REMOVE_RECURSE ${tree})
file(COPY ${PREFIX}/${LIB_DIR} ${PREFIX}/${DATA_DIR} DESTINATION ${tree})
set(show_names ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${tree}/${LIB_DIR}
    ${NAMES_TEST} tst_Names namesAreShownInTheLanguageThatIsInstalled)
run(${show_names})

# Without its catalogues the same test fails, so it was those that it found.
file(REMOVE_RECURSE ${tree}/${DATA_DIR}/tunerproperties-1/translations)
execute_process(COMMAND ${show_names} RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
if(status EQUAL 0)
    message(FATAL_ERROR "names are shown in German without the installed catalogues")
endif()
