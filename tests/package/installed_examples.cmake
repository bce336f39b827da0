# The installed example programs are built by the project file that is installed with them, and work.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(build ${SCRATCH_DIR}/examples)
set(examples ${PREFIX}/${DOC_DIR}/examples)
build_project(${examples} ${build} -DCMAKE_PREFIX_PATH=${PREFIX} "-DCMAKE_CXX_FLAGS=${FLAGS}")
foreach(program IN ITEMS build_a_receiver readme_example roundtrip)
    expect_libraries_from(${PREFIX}/${LIB_DIR} ${build}/${program})
endforeach()

run(${build}/readme_example ${examples}/receiver.xml ${build}/one_more.xml)
file(STRINGS ${examples}/receiver.xml before REGEX "quantity=")
file(STRINGS ${build}/one_more.xml after REGEX "quantity=")
if(NOT before MATCHES " quantity=\"2\"" OR NOT after MATCHES " quantity=\"3\"")
    message(FATAL_ERROR "readme_example makes '${after}' of '${before}'")
endif()
