# The first program of the manual is built against what is installed, and prints what the manual says.
include(${CMAKE_CURRENT_LIST_DIR}/../package/Common.cmake)

# With another Qt, the project names the package of that Qt.
set(build ${SCRATCH_DIR}/first_program)
set(project ${SCRATCH_DIR}/first_program_sources)
file(REMOVE_RECURSE ${project})
file(COPY ${SOURCE_DIR}/docs/snippets/first_program/ DESTINATION ${project})
file(READ ${project}/CMakeLists.txt text)
string(REPLACE "find_package(TunerProperties " "find_package(${PACKAGE} " text "${text}")
string(REPLACE " TunerProperties::" " ${PACKAGE}::" text "${text}")
file(WRITE ${project}/CMakeLists.txt "${text}")
build_project(${project} ${build}
    -DCMAKE_PREFIX_PATH=${PREFIX} "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${build}/first_program ${SOURCE_DIR}/examples/scp.xml)

file(READ ${SOURCE_DIR}/docs/pages/getting-started.md page)
string(FIND "${page}" "$ build/first_program scp.xml\n${output}```\n" place)
if(output STREQUAL "" OR place EQUAL -1)
    message(FATAL_ERROR "the program prints\n${output}and not what the manual says")
endif()

execute_process(COMMAND ${build}/first_program ${SCRATCH_DIR}/missing.xml RESULT_VARIABLE status ERROR_VARIABLE errors)
if(NOT status EQUAL 1 OR NOT errors STREQUAL "${SCRATCH_DIR}/missing.xml: cannot open: No such file or directory\n")
    message(FATAL_ERROR "for a missing file the program ends with ${status} and prints:\n${errors}")
endif()
