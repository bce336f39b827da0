# What the scripts of this folder share. They are run by CTest with the variables of CMakeLists.txt.
cmake_minimum_required(VERSION 3.25)

# Nothing in the environment may replace the installed files under test.
foreach(variable IN ITEMS LD_LIBRARY_PATH LD_PRELOAD CPATH LIBRARY_PATH CMAKE_PREFIX_PATH PKG_CONFIG_PATH CXXFLAGS DESTDIR)
    unset(ENV{${variable}})
endforeach()

# Runs a command, which has to succeed, and sets `output` to what it prints.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT status EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "'${command}' ended with ${status}:\n${output}${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# The loader has to load each of the libraries of the program from the folder: by default the model and what it uses.
function(expect_libraries_from folder program)
    cmake_parse_arguments(arg "" "" "ONLY" ${ARGN})
    set(libraries ReportBase TavikAppStartUp TunerProperties)
    if(arg_ONLY)
        set(libraries ${arg_ONLY})
    endif()
    file(REAL_PATH ${folder} folder)
    run(ldd ${program})
    string(REGEX MATCHALL "lib(ReportBase|TavikAppStartUp|TunerDocuments|TunerProperties)[^\n]*" found "${output}")
    set(loaded)
    foreach(line IN LISTS found)
        if(NOT line MATCHES "^lib([A-Za-z]+)${SUFFIX}\\.so\\.1 => ([^ ]+) ")
            message(FATAL_ERROR "'${line}' is not a library that ${program} may load")
        endif()
        set(library ${CMAKE_MATCH_1})
        file(REAL_PATH ${CMAKE_MATCH_2} file)
        cmake_path(GET file PARENT_PATH place)
        if(NOT place STREQUAL folder)
            message(FATAL_ERROR "${program} runs with ${file}, not with that in ${folder}")
        endif()
        list(APPEND loaded ${library})
    endforeach()
    list(SORT loaded)
    if(NOT loaded STREQUAL libraries)
        message(FATAL_ERROR "${program} runs with '${loaded}', not with '${libraries}'")
    endif()
endfunction()

# The program of consumer/ works.
function(expect_consumer_to_work program)
    run(${program} ${EXAMPLE})
    string(CONCAT expected
        "built against ${VERSION}\n"
        "OutOfRangeException: TunerProperties: Please set Component properly.\n"
        "SCP on RX-8G\n"
        "its records read back: the same document\n")
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "${program} prints\n${output}and not\n${expected}")
    endif()
endfunction()

# The program of consumer/ with documents in files finds problems with their paths, and differences, by the library of
# the folder.
function(expect_documents_to_work program folder)
    expect_libraries_from(${folder} ${program} ONLY ReportBase TavikAppStartUp TunerDocuments TunerProperties)
    expect_documents_of_program(${program})
endfunction()
function(expect_documents_of_program program)
    run(${program} ${EXAMPLE} ${SCRATCH_DIR}/changed.json)
    string(CONCAT expected
        "Component[type=GainControl,name=agc]: Component: Please set optional properly.\n"
        "~ Component[type=GainControl,name=agc]/optional: false -> false (not set)\n"
        "the file is json\n"
        "quantity is 1\n"
        "missing.xml: cannot open: No such file or directory\n")
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "${program} prints\n${output}and not\n${expected}")
    endif()
endfunction()

# The program of consumer/ with what only the libraries themselves call or read. Its arguments are those after the document;
# `shown` is the German name of a direction finder if the catalogs are found, and the name itself otherwise.
function(expect_parts_to_work program shown)
    run(${program} ${EXAMPLE} ${ARGN})
    string(CONCAT expected
        "registered: TunerProperties\n"
        "shown as: ${shown}\n"
        "the page has its script: yes\n"
        "the schema is there: yes\n")
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "${program} prints\n${output}and not\n${expected}")
    endif()
endfunction()

# The program of consumer/ with a derived class writes its own attribute, element and records, and reads them back.
function(expect_derived_class_to_work program)
    run(${program} ${EXAMPLE})
    string(CONCAT expected
        "<TunerProperties Version=\"1.1\" type=\"SCP\" baseresource=\"\" site=\"a\">"
        "<MaxFFPDelay>5</MaxFFPDelay><remark>b</remark></TunerProperties>\n"
        "00 00 00 63 " # 99 bytes
        "CC FE DF A1 00 00 00 0A 00 00 00 06 00 31 00 2E 00 31 " # version "1.1"
        "A1 F0 EE 2D 00 00 00 07 00 00 00 03 53 43 50 " # type "SCP"
        "E0 CF AE 8E 00 00 00 04 FF FF FF FF " # no baseresource
        "C8 B6 72 67 00 00 00 08 00 00 00 00 00 00 00 05 " # MaxFFPDelay 5
        "66 BA 8E 61 00 00 00 04 00 00 00 00 " # no components
        "5E 51 E0 01 00 00 00 05 00 00 00 01 61 " # site "a"
        "5E 51 E0 02 00 00 00 05 00 00 00 01 62\n" # remark "b"
        "TunerProperties: Please set site properly.\n"
        "its XML reads back: the same document\n"
        "its records read back: the same document\n"
        "its snapshot reads back: the same document\n"
        "merged into a new one: the same document\n")
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "${program} prints\n${output}and not\n${expected}")
    endif()
endfunction()

# Configures and builds a project, here by its name in this folder, in a build folder of its own.
function(build_project folder build)
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY ${CMAKE_CURRENT_FUNCTION_LIST_DIR})
    file(REMOVE_RECURSE ${build})
    run(${CMAKE_COMMAND} -S ${folder} -B ${build} -G ${GENERATOR}
        -DPACKAGE=${PACKAGE} -DQT_MAJOR_VERSION=${QT_MAJOR_VERSION}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_EXPORT_COMPILE_COMMANDS=ON ${ARGN})
    run(${CMAKE_COMMAND} --build ${build} --parallel 2)
endfunction()

# A program is compiled with the headers of one folder and none of another. `commands` is how it was compiled.
function(expect_headers commands)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "FROM;NOT_FROM" "")
    file(READ ${commands} text)
    foreach(option IN ITEMS "-I" "-isystem ")
        string(FIND "${text}" "${option}${arg_NOT_FROM}" unwanted)
        if(NOT unwanted EQUAL -1)
            message(FATAL_ERROR "headers are taken from ${arg_NOT_FROM}:\n${text}")
        endif()
    endforeach()
    string(FIND "${text}" "${arg_FROM} " wanted)
    if(wanted EQUAL -1)
        message(FATAL_ERROR "no headers are taken from ${arg_FROM}:\n${text}")
    endif()
endfunction()
