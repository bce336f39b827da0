# What static libraries need to work as shared ones do.
if(NOT BUILD_SHARED_LIBS)
    add_compile_definitions(
        REPORTBASE_STATIC_DEFINE TAVIKAPPSTARTUP_STATIC_DEFINE TUNERPROPERTIES_STATIC_DEFINE TUNERDOCUMENTS_STATIC_DEFINE)
endif()

# tp_add_whole_library(library): from the objects of tp_add_objects(library). A program contains all of them or none, and their
# statics are built in the order of the sources. Of a usual static library, a linker takes only what is called, in the order
# in which it is called; it would leave out a unit that does its work when it is loaded.
function(tp_add_whole_library library)
    set(objects $<TARGET_OBJECTS:${library}Objects>)
    if(NOT BUILD_SHARED_LIBS AND NOT MSVC)
        include(CheckLinkerFlag)
        check_linker_flag(CXX "SHELL:-r -nostdlib" TUNERPROPERTIES_HAS_RELOCATABLE_LINKS)
    endif()
    if(BUILD_SHARED_LIBS OR NOT TUNERPROPERTIES_HAS_RELOCATABLE_LINKS)
        add_library(${library} ${objects})
        if(NOT BUILD_SHARED_LIBS)
            tp_link_whole(${library})
        endif()
        return()
    endif()
    set(whole ${CMAKE_CURRENT_BINARY_DIR}/${library}${CMAKE_CXX_OUTPUT_EXTENSION})
    separate_arguments(flags NATIVE_COMMAND "${CMAKE_CXX_COMPILER_ARG1} ${CMAKE_CXX_FLAGS}")
    list(FILTER flags INCLUDE REGEX "^(-m|--target=|--sysroot=)")
    if(CMAKE_CXX_COMPILER_TARGET)
        list(APPEND flags "${CMAKE_CXX_COMPILE_OPTIONS_TARGET}${CMAKE_CXX_COMPILER_TARGET}")
    endif()
    add_custom_command(OUTPUT ${whole}
        COMMAND ${CMAKE_CXX_COMPILER} ${flags} -r -nostdlib -o ${whole} ${objects}
        DEPENDS ${objects}
        COMMENT "Combining the objects of ${library}"
        COMMAND_EXPAND_LISTS VERBATIM)
    set_target_properties(${library}Objects PROPERTIES INTERPROCEDURAL_OPTIMIZATION OFF) # the linker takes objects only
    add_library(${library} STATIC ${whole})
    set_target_properties(${library} PROPERTIES LINKER_LANGUAGE CXX)
endfunction()

# For linkers that cannot combine objects: programs that CMake builds pass this option.
function(tp_link_whole library)
    if(MSVC)
        target_link_options(${library} INTERFACE "LINKER:/WHOLEARCHIVE:$<TARGET_FILE_NAME:${library}>")
    else()
        message(WARNING "The linker has no option -r: programs have to link ${library} as a whole by themselves.")
    endif()
endfunction()
