# tp_compile_catalogs(target folder name.ts...)
# A target that compiles each catalog to folder/name.qm; part of the default build.
function(tp_compile_catalogs target folder)
    set(compiled)
    foreach(source IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH source)
        cmake_path(GET source STEM LAST_ONLY name)
        add_custom_command(
            OUTPUT ${folder}/${name}.qm
            COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
            COMMAND ${TUNERPROPERTIES_LRELEASE} -silent ${source} -qm ${folder}/${name}.qm
            DEPENDS ${source}
            COMMENT "Compiling catalog ${name}.qm"
            VERBATIM)
        list(APPEND compiled ${folder}/${name}.qm)
    endforeach()
    add_custom_target(${target} ALL DEPENDS ${compiled})
    set_target_properties(${target} PROPERTIES COMPILED_CATALOGS "${compiled}")
endfunction()
