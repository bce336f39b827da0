# Whatever a test program writes as XML while validating is kept in a folder of its own, by WrittenXml.cpp, and the test
# "written_xml_is_valid" in schema/ holds it against the schema once all of them have run.
set(TP_WRITTEN_XML_DIR ${PROJECT_BINARY_DIR}/tests/written_xml)
add_library(written_xml OBJECT ${CMAKE_CURRENT_LIST_DIR}/WrittenXml.cpp)
tp_target_defaults(written_xml)
target_link_libraries(written_xml PUBLIC TunerProperties ${CMAKE_DL_LIBS})

# Qt Test, which every program includes, is taken in once: it is most of what compiling a test takes.
add_library(tests_pch OBJECT ${CMAKE_CURRENT_LIST_DIR}/Precompiled.cpp)
tp_target_defaults(tests_pch)
target_link_libraries(tests_pch PRIVATE Qt5::Test)
target_precompile_headers(tests_pch PRIVATE <QtTest>)

# tp_add_test(tst_Name [KEEPS_NO_XML] [LABELS label...] [SOURCES more.cpp...] [LIBRARIES target...])
# One Qt Test program from tst_Name.cpp, run by CTest under its name.
# KEEPS_NO_XML is for programs that count what the library does or make it fail, which keeping would disturb.
function(tp_add_test name)
    cmake_parse_arguments(arg "KEEPS_NO_XML" "" "LABELS;SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    tp_target_defaults(${name})
    set_target_properties(${name} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE EXAMPLES_DIR="${PROJECT_SOURCE_DIR}/examples")
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} Qt5::Test)
    target_precompile_headers(${name} REUSE_FROM tests_pch)
    add_test(NAME ${name} COMMAND ${name})
    set(environment "LC_ALL=C.UTF-8" "QT_LOGGING_RULES=")
    if(TunerProperties IN_LIST arg_LIBRARIES AND NOT arg_KEEPS_NO_XML)
        target_link_libraries(${name} PRIVATE written_xml)
        list(APPEND environment "TUNERPROPERTIES_WRITTEN_XML=${TP_WRITTEN_XML_DIR}/${name}")
        set_property(TARGET written_xml APPEND PROPERTY TP_WRITERS ${name})
    endif()
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT 120 ENVIRONMENT "${environment}")
endfunction()
