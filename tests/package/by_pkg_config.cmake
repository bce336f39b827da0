# The compiler finds the moved tree by pkg-config, and the program is run with the libraries there.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(build ${SCRATCH_DIR}/by_pkg_config)
file(REMOVE_RECURSE ${build})
file(MAKE_DIRECTORY ${build})
set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIB_DIR}/pkgconfig)

run(${PKG_CONFIG} --modversion tunerproperties${SUFFIX})
if(NOT output STREQUAL "${VERSION}\n")
    message(FATAL_ERROR "pkg-config reports version '${output}', not ${VERSION}")
endif()
run(${PKG_CONFIG} --exact-version=${VERSION} --print-errors tunerproperties${SUFFIX})

run(${PKG_CONFIG} --cflags --libs tunerproperties${SUFFIX})
separate_arguments(options UNIX_COMMAND "${output}")
separate_arguments(flags UNIX_COMMAND "${FLAGS}")

# Compares the headers that were read, not the folders, which pkg-config spells in its own way.
run(${COMPILER} -std=c++17 -fPIC -Wall -Wextra -Wpedantic -Werror ${flags} -MD -MF ${build}/headers
    ${CMAKE_CURRENT_LIST_DIR}/consumer/main.cpp ${options} -Wl,-rpath,${PREFIX}/${LIB_DIR} -o ${build}/consumer)
file(READ ${build}/headers headers)
string(REGEX MATCHALL "[^ \n\\]+/(jobxml|reportbase)/[A-Za-z]+\\.h" headers "${headers}")
if(NOT headers MATCHES "/jobxml/TunerProperties\\.h" OR NOT headers MATCHES "/jobxml/Export\\.h")
    message(FATAL_ERROR "the compiler has not read the headers: ${headers}")
endif()
foreach(header IN LISTS headers)
    file(REAL_PATH ${header} header)
    cmake_path(IS_PREFIX PREFIX ${header} is_ours)
    if(NOT is_ours)
        message(FATAL_ERROR "the compiler has read ${header}, which is not in ${PREFIX}")
    endif()
endforeach()

# The library for documents has a file of its own, which requires the other ones.
run(${PKG_CONFIG} --exact-version=${VERSION} --print-errors tunerdocuments${SUFFIX})
run(${PKG_CONFIG} --print-requires tunerdocuments${SUFFIX})
if(NOT output MATCHES "^tunerproperties${SUFFIX} = ${VERSION}\nQt${QT_MAJOR_VERSION}Core >= ")
    message(FATAL_ERROR "tunerdocuments requires '${output}'")
endif()
run(${PKG_CONFIG} --cflags --libs tunerdocuments${SUFFIX})
separate_arguments(options_for_documents UNIX_COMMAND "${output}")
run(${COMPILER} -std=c++17 -fPIC -Wall -Wextra -Wpedantic -Werror ${flags}
    ${CMAKE_CURRENT_LIST_DIR}/consumer/documents.cpp ${options_for_documents} -Wl,-rpath,${PREFIX}/${LIB_DIR}
    -o ${build}/documents)
expect_documents_to_work(${build}/documents ${PREFIX}/${LIB_DIR})

# What a program does not call is not linked with it: the model uses the registry by itself.
run(${PKG_CONFIG} --libs-only-l tunerproperties${SUFFIX})
if(output MATCHES "TavikAppStartUp" OR NOT output MATCHES "-lReportBase${SUFFIX} ")
    message(FATAL_ERROR "programs that use tunerproperties are linked with '${output}'")
endif()
run(${PKG_CONFIG} --cflags --libs tavikappstartup${SUFFIX})
separate_arguments(options_for_registry UNIX_COMMAND "${output}")
run(${COMPILER} -std=c++17 -fPIC ${flags} ${CMAKE_CURRENT_LIST_DIR}/registry_alone/main.cpp ${options_for_registry}
    -Wl,-rpath,${PREFIX}/${LIB_DIR} -o ${build}/registry_alone)
run(${build}/registry_alone)

expect_libraries_from(${PREFIX}/${LIB_DIR} ${build}/consumer)
expect_consumer_to_work(${build}/consumer)
