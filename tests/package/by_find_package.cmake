# A CMake project finds the moved tree, and its program is built and run with the installed libraries.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(build ${SCRATCH_DIR}/by_find_package)
build_project(consumer ${build}
    -DCMAKE_PREFIX_PATH=${PREFIX} -DEXPECTED_VERSION=${VERSION} "-DCMAKE_CXX_FLAGS=${FLAGS}")
expect_headers(${build}/compile_commands.json FROM ${PREFIX}/${INCLUDE_DIR} NOT_FROM ${SOURCE_DIR}/include)
expect_libraries_from(${PREFIX}/${LIB_DIR} ${build}/consumer)
expect_consumer_to_work(${build}/consumer)

# A derived class needs nothing that is not installed.
expect_libraries_from(${PREFIX}/${LIB_DIR} ${build}/derived)
expect_derived_class_to_work(${build}/derived)

# The library above the model brings it along.
expect_documents_to_work(${build}/documents ${PREFIX}/${LIB_DIR})

# Catalogs are found from the folder of the libraries.
expect_libraries_from(${PREFIX}/${LIB_DIR} ${build}/parts ONLY ReportBase TavikAppStartUp TunerDocuments TunerProperties)
expect_parts_to_work(${build}/parts Peiler)

# The exported targets are those of the shared libraries: what is linked into them is not installed.
file(STRINGS ${PREFIX}/${LIB_DIR}/cmake/${PACKAGE}/${PACKAGE}Targets.cmake targets REGEX "^add_library")
list(TRANSFORM targets REPLACE "^add_library\\(([A-Za-z0-9:_]+) SHARED IMPORTED\\)$" "\\1")
list(SORT targets)
set(expected ${PACKAGE}::ReportBase ${PACKAGE}::TavikAppStartUp ${PACKAGE}::TunerDocuments ${PACKAGE}::TunerProperties)
if(NOT targets STREQUAL expected)
    message(FATAL_ERROR "the exported targets are '${targets}', not '${expected}'")
endif()

# A single library does not add the others.
build_project(registry_alone ${build}/registry_alone
    -DCMAKE_PREFIX_PATH=${PREFIX} "-DCMAKE_CXX_FLAGS=${FLAGS}")
expect_libraries_from(${PREFIX}/${LIB_DIR} ${build}/registry_alone/registry_alone ONLY TavikAppStartUp)
run(${build}/registry_alone/registry_alone)
if(NOT output STREQUAL "Application\n")
    message(FATAL_ERROR "registry_alone prints '${output}'")
endif()
