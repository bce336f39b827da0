# The peers, each built if its package is installed, by a source and a definition that are added to bench_operations.
# What their compilers generate goes to the build tree and is compiled as it comes, without warnings.

function(bench_peer name source definition)
    message(STATUS "Benchmark: ${name} is found and measured too")
    target_sources(bench_operations PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/peers/${source})
    target_compile_definitions(bench_operations PRIVATE ${definition})
    target_link_libraries(bench_operations PRIVATE ${ARGN})
endfunction()

# A library of its own for generated code; its headers are system headers to others.
function(bench_generated target folder)
    add_library(${target} STATIC ${ARGN})
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_compile_options(${target} PRIVATE -w)
    target_include_directories(${target} SYSTEM PUBLIC ${folder})
endfunction()

set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${generated})
set(left_out)

find_package(${tp_qt}Xml QUIET)
if(${tp_qt}Xml_FOUND)
    bench_peer("QtXml" QtXml.cpp BENCH_HAS_QTXML ${tp_qt}::Xml)
else()
    list(APPEND left_out "QtXml (qtbase5-dev)")
endif()

find_package(pugixml QUIET)
if(pugixml_FOUND)
    bench_peer("pugixml" Pugixml.cpp BENCH_HAS_PUGIXML pugixml::pugixml)
else()
    list(APPEND left_out "pugixml (libpugixml-dev)")
endif()

find_program(XSDCXX xsdcxx)
find_package(XercesC QUIET)
if(XSDCXX AND XercesC_FOUND)
    set(schema ${PROJECT_SOURCE_DIR}/share/tuner-properties.xsd)
    add_custom_command(
        OUTPUT ${generated}/tuner-properties.cxx ${generated}/tuner-properties.hxx
        COMMAND ${XSDCXX} cxx-tree --std c++11 --generate-serialization --root-element TunerProperties
                --namespace-map =Peer --output-dir ${generated} ${schema}
        DEPENDS ${schema}
        VERBATIM)
    bench_generated(bench_codesynthesis ${generated}
        ${generated}/tuner-properties.cxx ${generated}/tuner-properties.hxx)
    target_link_libraries(bench_codesynthesis PUBLIC XercesC::XercesC)
    bench_peer("CodeSynthesis XSD" CodeSynthesis.cpp BENCH_HAS_CODESYNTHESIS bench_codesynthesis)
else()
    list(APPEND left_out "CodeSynthesis XSD (xsdcxx, libxerces-c-dev)")
endif()

find_package(Protobuf QUIET)
if(Protobuf_FOUND AND PROTOBUF_PROTOC_EXECUTABLE)
    set(messages ${CMAKE_CURRENT_SOURCE_DIR}/peers/tuner.proto)
    add_custom_command(
        OUTPUT ${generated}/tuner.pb.cc ${generated}/tuner.pb.h
        COMMAND ${PROTOBUF_PROTOC_EXECUTABLE} --proto_path=${CMAKE_CURRENT_SOURCE_DIR}/peers --cpp_out=${generated}
                ${messages}
        DEPENDS ${messages}
        VERBATIM)
    bench_generated(bench_protobuf ${generated} ${generated}/tuner.pb.cc ${generated}/tuner.pb.h)
    target_link_libraries(bench_protobuf PUBLIC protobuf::libprotobuf)
    bench_peer("protobuf" Protobuf.cpp BENCH_HAS_PROTOBUF bench_protobuf)
else()
    list(APPEND left_out "protobuf (protobuf-compiler, libprotobuf-dev)")
endif()

if(left_out)
    list(JOIN left_out ", " left_out)
    message(STATUS "Benchmark: left out, since not found: ${left_out}")
endif()
