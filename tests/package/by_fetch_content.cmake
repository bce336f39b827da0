# A CMake project includes the sources by FetchContent: its program is built and run, and nothing is added that it has
# not requested.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

# The library is compiled once more for this, so without anything that takes time.
set(build ${SCRATCH_DIR}/by_fetch_content)
build_project(subproject ${build} -DLIBRARY_SOURCE=${SOURCE_DIR} -DCMAKE_BUILD_TYPE= -DCMAKE_CXX_FLAGS=-O0)
expect_headers(${build}/compile_commands.json FROM ${SOURCE_DIR}/include NOT_FROM ${PREFIX})
expect_libraries_from(${build}/all ${build}/all/consumer)
expect_consumer_to_work(${build}/all/consumer)
expect_documents_to_work(${build}/all/documents ${build}/all)

# The catalogs are beside the libraries, in the folder that the application has chosen.
foreach(catalog IN ITEMS TunerProperties_de.qm TunerProperties_en.qm)
    if(NOT EXISTS ${build}/all/translations/${catalog})
        message(FATAL_ERROR "${catalog} is not beside the libraries")
    endif()
endforeach()

run(${CMAKE_COMMAND} --install ${build} --prefix ${build}/installed)
file(GLOB_RECURSE installed RELATIVE ${build}/installed ${build}/installed/*)
if(NOT installed STREQUAL "bin/consumer")
    message(FATAL_ERROR "the application installs '${installed}', not just its program")
endif()

run(${CMAKE_CTEST_COMMAND} --test-dir ${build} --show-only)
if(NOT output MATCHES "Test #1: the_only_test\n" OR NOT output MATCHES "Total Tests: 1\n")
    message(FATAL_ERROR "the application has other tests than its own:\n${output}")
endif()
