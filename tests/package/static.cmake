# Static libraries are built, installed and moved. Programs that are linked with them by CMake and by pkg-config contain all
# of what the libraries do when they are loaded, and find their catalogs from where the program is.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(SCRATCH_DIR ${SCRATCH_DIR}_of_static_libraries) # the tests of shared libraries remove theirs
set(build ${SCRATCH_DIR})
set(prefix ${build}/moved)
build_project(${SOURCE_DIR} ${build}/library
    -DBUILD_SHARED_LIBS=OFF -DTUNERPROPERTIES_BUILD_TOOL=OFF -DTUNERPROPERTIES_BUILD_EXAMPLES=OFF
    -DCMAKE_BUILD_TYPE= -DCMAKE_CXX_FLAGS=-O0
    -DCMAKE_INSTALL_LIBDIR=${LIB_DIR} -DCMAKE_INSTALL_BINDIR=${BIN_DIR} -DCMAKE_INSTALL_DATADIR=${DATA_DIR})
run(${CMAKE_COMMAND} --install ${build}/library --prefix ${build}/first)
file(REMOVE_RECURSE ${prefix})
file(RENAME ${build}/first ${prefix})

# Nothing that is only used by the build is installed.
file(GLOB libraries RELATIVE ${prefix}/${LIB_DIR} ${prefix}/${LIB_DIR}/lib*)
list(SORT libraries)
set(expected libReportBase${SUFFIX}.a libTavikAppStartUp${SUFFIX}.a libTunerDocuments${SUFFIX}.a
    libTunerProperties${SUFFIX}.a)
if(NOT libraries STREQUAL expected)
    message(FATAL_ERROR "the installed libraries are '${libraries}', not '${expected}'")
endif()

# The units of the classes are built in the order of their list, and the registration is built last. The objects are in one
# section, so the order of their functions is that in which these run.
file(STRINGS ${SOURCE_DIR}/src/module/Classes.def expected REGEX "^JOBXML_")
list(TRANSFORM expected REPLACE "^JOBXML_[A-Z]+\\([a-z]+, ([A-Za-z0-9]+)\\)$" "\\1")
list(APPEND expected LibraryEntry)
run(${NM} --numeric-sort ${prefix}/${LIB_DIR}/libTunerProperties${SUFFIX}.a)
string(REGEX MATCHALL "_GLOBAL__sub_I_[^\n]+" functions "${output}")
set(built)
foreach(function IN LISTS functions)
    foreach(unit IN LISTS expected)
        string(LENGTH ${unit} length)
        # Named after the source, or after the first function of the class.
        if(function MATCHES "_I_${unit}\\.cpp$" OR function MATCHES "_I__ZNK?6JobXml${length}${unit}[^a-z]")
            list(APPEND built ${unit})
        endif()
    endforeach()
endforeach()
if(NOT built STREQUAL expected)
    message(FATAL_ERROR "the units are built in the order '${built}', not '${expected}'")
endif()

function(expect_all_to_work folder)
    foreach(program IN ITEMS consumer derived documents parts)
        run(ldd ${folder}/${program})
        if(output MATCHES "lib(ReportBase|TavikAppStartUp|TunerDocuments|TunerProperties)" OR NOT output MATCHES "Core\\.so")
            message(FATAL_ERROR "${program} loads ${output}")
        endif()
    endforeach()
    expect_consumer_to_work(${folder}/consumer)
    expect_derived_class_to_work(${folder}/derived)
    expect_documents_of_program(${folder}/documents)
    expect_parts_to_work(${folder}/parts DirectionFinder)
    expect_parts_to_work(${folder}/parts Peiler ${prefix}/${DATA_DIR}/tunerproperties-1/translations)
endfunction()

# By CMake, which passes on what the libraries need and how their headers declare them.
build_project(consumer ${build}/by_find_package -DCMAKE_PREFIX_PATH=${prefix} -DEXPECTED_VERSION=${VERSION})
expect_all_to_work(${build}/by_find_package)
file(READ ${build}/by_find_package/compile_commands.json commands)
foreach(library IN ITEMS REPORTBASE TAVIKAPPSTARTUP TUNERPROPERTIES TUNERDOCUMENTS)
    if(NOT commands MATCHES "-D${library}_STATIC_DEFINE")
        message(FATAL_ERROR "${library}_STATIC_DEFINE is not passed to the compiler:\n${commands}")
    endif()
endforeach()

# By pkg-config, with and without the option for static libraries.
set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIB_DIR}/pkgconfig)
foreach(option IN ITEMS --shared --static)
    set(folder ${build}/by_pkg_config${option})
    file(REMOVE_RECURSE ${folder})
    file(MAKE_DIRECTORY ${folder})
    run(${PKG_CONFIG} ${option} --cflags --libs tunerdocuments${SUFFIX} tavikappstartup${SUFFIX})
    separate_arguments(options UNIX_COMMAND "${output}")
    foreach(library IN ITEMS REPORTBASE TAVIKAPPSTARTUP TUNERPROPERTIES TUNERDOCUMENTS)
        if(NOT -D${library}_STATIC_DEFINE IN_LIST options)
            message(FATAL_ERROR "pkg-config ${option} does not print -D${library}_STATIC_DEFINE: ${options}")
        endif()
    endforeach()
    foreach(program IN ITEMS consumer derived documents parts)
        set(source ${program})
        if(program STREQUAL consumer)
            set(source main)
        endif()
        run(${COMPILER} -std=c++17 -fPIC ${CMAKE_CURRENT_LIST_DIR}/consumer/${source}.cpp ${options} -o ${folder}/${program})
    endforeach()
    expect_all_to_work(${folder})
endforeach()
run(${PKG_CONFIG} --variable=translationsdir tunerproperties${SUFFIX})
string(STRIP "${output}" translations)
file(REAL_PATH ${translations} translations)
file(REAL_PATH ${prefix}/${DATA_DIR}/tunerproperties-1/translations expected)
if(NOT translations STREQUAL expected)
    message(FATAL_ERROR "pkg-config says that the catalogs are in '${translations}', not in '${expected}'")
endif()

# A program that is installed beside them finds them, however it is started.
file(MAKE_DIRECTORY ${prefix}/${BIN_DIR})
file(COPY ${build}/by_find_package/parts DESTINATION ${prefix}/${BIN_DIR})
expect_parts_to_work(${prefix}/${BIN_DIR}/parts Peiler)
file(CREATE_LINK ${prefix}/${BIN_DIR}/parts ${build}/link SYMBOLIC)
expect_parts_to_work(${build}/link Peiler)
set(ENV{PATH} "${prefix}/${BIN_DIR}:$ENV{PATH}")
expect_parts_to_work(parts Peiler)
