# WrittenXml.cpp keeps the XML that a suite writes while validating, in a folder for each suite. The test
# "written_xml_is_valid" in schema/ checks it against the schema after all suites.
set(TP_WRITTEN_XML_DIR ${PROJECT_BINARY_DIR}/tests/written_xml)

# Line numbers are enough to find a failure in a test; further debugging information takes a quarter of the compile time.
# Use -DTP_TEST_DEBUGGING=-g to see variables in a debugger.
set(TP_TEST_DEBUGGING -g1 CACHE STRING "Debugging information of the tests in debug builds")
set(tp_test_debugging)
if(CMAKE_BUILD_TYPE STREQUAL Debug AND CMAKE_CXX_FLAGS_DEBUG MATCHES "(^| )-g( |$)")
    set(tp_test_debugging ${TP_TEST_DEBUGGING})
endif()

# Precompiles Qt Test, which every suite includes: reading it takes most of the time of compiling a suite.
add_library(tests_pch OBJECT ${CMAKE_CURRENT_LIST_DIR}/Suites.cpp)
tp_target_defaults(tests_pch)
target_compile_options(tests_pch PRIVATE ${tp_test_debugging})
target_link_libraries(tests_pch PRIVATE ${tp_qt}::Test)
target_precompile_headers(tests_pch PRIVATE <QtTest>)

# The generated files that compiling needs, for scripts/clang.sh. Depends on no library.
add_custom_target(test_sources)

# tp_add_test_objects(name SOURCES file... [LIBRARIES target...])
# Sources that several suites or programs use, compiled once. Programs name them among their LIBRARIES.
function(tp_add_test_objects name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_library(${name} OBJECT ${arg_SOURCES})
    tp_target_defaults(${name})
    target_compile_options(${name} PRIVATE ${tp_test_debugging})
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PUBLIC ${arg_LIBRARIES})
endfunction()

set(tests ${CMAKE_CURRENT_LIST_DIR})
tp_add_test_objects(written_xml SOURCES ${tests}/WrittenXml.cpp LIBRARIES TunerProperties ${CMAKE_DL_LIBS})
tp_add_test_objects(watched_heap SOURCES ${tests}/Heap.cpp)
tp_add_test_objects(generator SOURCES ${tests}/interop/Generator.cpp LIBRARIES TunerProperties)

# tp_add_test_program(test_name [TOGETHER number] [SOURCES file...] [LIBRARIES target...] [DEFINITIONS definition...]
#                     [DEPENDS target...])
# A program for the suites of a folder, which tp_add_test() adds to it. TOGETHER is the number of suites that are compiled
# together, each in a namespace of its own. A folder has several programs if its suites need different libraries.
function(tp_add_test_program name)
    cmake_parse_arguments(arg "" "TOGETHER" "SOURCES;LIBRARIES;DEFINITIONS;DEPENDS" ${ARGN})
    add_executable(${name} ${arg_SOURCES} $<TARGET_OBJECTS:tests_pch>)
    tp_target_defaults(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
    target_include_directories(${name} PRIVATE
        ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_BINARY_DIR}/${name})
    target_compile_definitions(${name} PRIVATE EXAMPLES_DIR="${PROJECT_SOURCE_DIR}/examples" ${arg_DEFINITIONS})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} ${tp_qt}::Test)
    target_precompile_headers(${name} REUSE_FROM tests_pch)
    # Each suite is included by only one source, so that types without linkage are not a problem.
    target_compile_options(${name} PRIVATE ${tp_test_debugging} $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    if(arg_DEPENDS)
        add_dependencies(${name} ${arg_DEPENDS})
    endif()
    if(NOT arg_TOGETHER)
        set(arg_TOGETHER 4)
    endif()
    set_target_properties(${name} PROPERTIES TP_TOGETHER ${arg_TOGETHER} TP_LIBRARIES "${arg_LIBRARIES}")
    set_property(DIRECTORY PROPERTY TP_TEST_PROGRAM ${name})
    cmake_language(EVAL CODE "cmake_language(DEFER CALL tp_gather_suites ${name})")
endfunction()

# tp_add_test(tst_Name [ALONE] [KEEPS_NO_XML] [LABELS label...])
# Adds the suite of tst_Name.cpp to the program that was added last in this folder. CTest runs it under its name, in a
# process of its own. A target of the same name builds the program.
# ALONE is for suites that contain something that is not allowed in a namespace: they are not compiled with others.
# KEEPS_NO_XML is for suites that count operations of the library or make them fail, which keeping XML would affect.
function(tp_add_test name)
    cmake_parse_arguments(arg "ALONE;KEEPS_NO_XML" "" "LABELS" ${ARGN})
    get_property(program DIRECTORY PROPERTY TP_TEST_PROGRAM)
    if(arg_ALONE)
        set_property(TARGET ${program} APPEND PROPERTY TP_ALONE ${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp)
    else()
        set_property(TARGET ${program} APPEND PROPERTY TP_SUITES ${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp)
    endif()
    add_custom_target(${name} DEPENDS ${program})
    add_test(NAME ${name} COMMAND ${program} ${name})
    set(environment "LC_ALL=C.UTF-8" "QT_LOGGING_RULES=")
    get_target_property(libraries ${program} TP_LIBRARIES)
    if(written_xml IN_LIST libraries AND NOT arg_KEEPS_NO_XML)
        list(APPEND environment "TUNERPROPERTIES_WRITTEN_XML=${TP_WRITTEN_XML_DIR}/${name}")
        set_property(TARGET written_xml APPEND PROPERTY TP_WRITERS ${name})
    endif()
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT 300 ENVIRONMENT "${environment}")
    if(name IN_LIST TP_ONLY_ON_LINUX)
        set_tests_properties(${name} PROPERTIES DISABLED ON)
    endif()
endfunction()

# Called at the end of the folder, when all its suites are known.
function(tp_gather_suites program)
    get_target_property(together ${program} TP_TOGETHER)
    get_target_property(suites ${program} TP_SUITES)
    get_target_property(alone ${program} TP_ALONE)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${program})
    set(arguments)
    set(units)
    set(mocs)
    set(in_unit ${together})
    macro(add_unit)
        list(LENGTH units number)
        math(EXPR number "${number} + 1")
        list(APPEND units ${folder}/suites_${number}.cpp)
        list(APPEND arguments --unit)
        set(in_unit 0)
    endmacro()
    macro(add_suite suite)
        list(APPEND arguments ${suite})
        cmake_path(GET suite STEM stem)
        list(APPEND mocs ${folder}/${stem}.moc)
        math(EXPR in_unit "${in_unit} + 1")
    endmacro()
    if(NOT suites)
        set(suites)
    endif()
    foreach(suite IN LISTS suites)
        if(in_unit EQUAL together)
            add_unit()
        endif()
        add_suite(${suite})
    endforeach()
    if(alone)
        foreach(suite IN LISTS alone)
            add_unit()
            add_suite(${suite})
            list(APPEND suites ${suite})
        endforeach()
    endif()
    add_custom_command(OUTPUT ${units} BYPRODUCTS ${mocs}
        COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/gather.py $<TARGET_FILE:${tp_qt}::moc> ${folder} ${arguments}
        DEPENDS ${PROJECT_SOURCE_DIR}/tests/gather.py ${suites}
        COMMENT "Gathering the suites of ${program}"
        VERBATIM)
    target_sources(${program} PRIVATE ${units})
    add_custom_target(${program}_sources DEPENDS ${units})
    add_dependencies(test_sources ${program}_sources)
endfunction()
