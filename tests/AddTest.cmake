# tp_add_test(tst_Name [LABELS label...] [SOURCES more.cpp...] [LIBRARIES target...])
# One Qt Test program from tst_Name.cpp, run by CTest under its name.
function(tp_add_test name)
    cmake_parse_arguments(arg "" "" "LABELS;SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    tp_target_defaults(${name})
    set_target_properties(${name} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE EXAMPLES_DIR="${PROJECT_SOURCE_DIR}/examples")
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} Qt5::Test)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT 120
        ENVIRONMENT "LC_ALL=C.UTF-8;QT_LOGGING_RULES=")
endfunction()
