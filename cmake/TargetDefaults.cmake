# What every target of this project is built with. Warnings are always on; only the presets that CI uses
# turn them into errors (CMAKE_COMPILE_WARNING_AS_ERROR), so a newer compiler never breaks a user's build.

include(CheckCXXCompilerFlag)

# An unloaded library must really go away; a unique symbol would pin it in the process.
check_cxx_compiler_flag(-fno-gnu-unique TUNERPROPERTIES_HAS_NO_GNU_UNIQUE)

# A library's calls of its own functions are its own business: they need not look whether another library has some of
# the same names, and may be inlined.
check_cxx_compiler_flag(-fno-semantic-interposition TUNERPROPERTIES_HAS_NO_SEMANTIC_INTERPOSITION)

check_cxx_compiler_flag(-fmacro-prefix-map=/a=/b TUNERPROPERTIES_HAS_MACRO_PREFIX_MAP)

function(tp_target_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        UNITY_BUILD OFF) # a project that takes in this one may be for it; our sources are not
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
    if(TUNERPROPERTIES_HAS_NO_GNU_UNIQUE)
        target_compile_options(${target} PRIVATE -fno-gnu-unique)
    endif()
    if(TUNERPROPERTIES_HAS_NO_SEMANTIC_INTERPOSITION)
        target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    endif()
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_KEYWORDS
        QT_NO_FOREACH QT_DEPRECATED_WARNINGS QT_STRICT_ITERATORS)
endfunction()

# For what is installed: the places in sources that it tells of in debug builds are told from the top of the project.
# Where that stood on the machine that built it means nothing anywhere else.
function(tp_relative_places target)
    if(TUNERPROPERTIES_HAS_MACRO_PREFIX_MAP)
        target_compile_options(${target} PRIVATE -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
    endif()
endfunction()

# A shared library whose export header is generated as <folder/Export.h>.
function(tp_library_defaults target folder macro)
    tp_target_defaults(${target})
    add_library(TunerProperties::${target} ALIAS ${target})
    generate_export_header(${target}
        EXPORT_MACRO_NAME ${macro}
        EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/include/${folder}/Export.h)
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${target} PUBLIC Qt5::Core)
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN")
    tp_relative_places(${target})
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    if(TUNERPROPERTIES_INSTALL)
        install(TARGETS ${target} EXPORT TunerPropertiesTargets
            LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
            RUNTIME COMPONENT runtime
            ARCHIVE COMPONENT development)
        install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/${folder} ${PROJECT_BINARY_DIR}/include/${folder}
            DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
            COMPONENT development
            FILES_MATCHING PATTERN "*.h")
    endif()
endfunction()
