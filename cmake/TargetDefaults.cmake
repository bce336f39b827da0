# What every target of this project is built with. Warnings are always on; only the presets that CI uses
# turn them into errors (CMAKE_COMPILE_WARNING_AS_ERROR), so a newer compiler never breaks a user's build.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

# Of the options of GCC, those that not every compiler knows are tried first.
set(tp_warnings -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(MSVC)
    set(tp_warnings /W4 /utf-8 /permissive- /Zc:__cplusplus)
endif()

# A shared library finds the others in its own folder.
set(tp_own_folder "$ORIGIN")
if(APPLE)
    set(tp_own_folder "@loader_path")
endif()

# Missing symbols of a shared library are found when it is linked; some systems always do so.
if(CMAKE_EXECUTABLE_FORMAT STREQUAL ELF) # other linkers may ignore it with a warning
    check_linker_flag(CXX "LINKER:--no-undefined" TUNERPROPERTIES_HAS_NO_UNDEFINED)
endif()

# An unloaded library must really go away; a unique symbol would pin it in the process.
check_cxx_compiler_flag(-fno-gnu-unique TUNERPROPERTIES_HAS_NO_GNU_UNIQUE)

# Calls within a library are resolved within it, even if another library exports the same names, and may be inlined.
check_cxx_compiler_flag(-fno-semantic-interposition TUNERPROPERTIES_HAS_NO_SEMANTIC_INTERPOSITION)

check_cxx_compiler_flag(-fmacro-prefix-map=/a=/b TUNERPROPERTIES_HAS_MACRO_PREFIX_MAP)

# Optimized builds are hardened with the flags that Debian builds its packages with (dpkg-buildflags, hardening=+all), and
# against stacks that grow into other memory. Flags that CMAKE_CXX_FLAGS contains, as it does when Debian packages are built,
# are not repeated. Debug builds are not hardened: without optimization there is nothing to fortify, and sanitizers find more.
set(tp_hardened "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
if(CMAKE_BUILD_TYPE MATCHES "^(None)?$" AND CMAKE_CXX_FLAGS MATCHES "-O[1-3s]")
    set(tp_hardened 1)
endif()
set(tp_hardening OFF)
set(tp_hardening_compile_options)
set(tp_hardening_link_options)
if(TUNERPROPERTIES_HARDENING AND NOT MSVC AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(tp_hardening ON)
    foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection
            "-Wformat -Wformat-security")
        string(MAKE_C_IDENTIFIER "TUNERPROPERTIES_HAS${flag}" variable)
        check_cxx_compiler_flag("${flag}" ${variable})
        if(${variable} AND NOT " ${CMAKE_CXX_FLAGS} " MATCHES " ${flag} ")
            list(APPEND tp_hardening_compile_options "SHELL:${flag}")
        endif()
    endforeach()
    # Undefined first: compilers of some distributions define it, and the environment may.
    if(NOT CMAKE_CXX_FLAGS MATCHES "-D_FORTIFY_SOURCE=[2-9]")
        list(APPEND tp_hardening_compile_options "SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2")
    endif()
    check_linker_flag(CXX "-Wl,-z,relro,-z,now" TUNERPROPERTIES_HAS_RELRO_NOW)
    if(TUNERPROPERTIES_HAS_RELRO_NOW AND NOT CMAKE_SHARED_LINKER_FLAGS MATCHES "-z,relro.*-z,now")
        list(APPEND tp_hardening_link_options "-Wl,-z,relro,-z,now")
    endif()
endif()

function(tp_target_defaults target)
    foreach(option IN LISTS tp_hardening_compile_options)
        target_compile_options(${target} PRIVATE "$<${tp_hardened}:${option}>")
    endforeach()
    get_target_property(type ${target} TYPE)
    if(tp_hardening AND type STREQUAL "EXECUTABLE")
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    endif()
    if(NOT type STREQUAL "STATIC_LIBRARY" AND NOT type STREQUAL "OBJECT_LIBRARY")
        foreach(option IN LISTS tp_hardening_link_options)
            target_link_options(${target} PRIVATE "$<${tp_hardened}:${option}>")
        endforeach()
    endif()
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        UNITY_BUILD OFF) # an including project may use it; our sources do not support it
    target_compile_options(${target} PRIVATE ${tp_warnings} ${tp_further_warnings})
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

# Flags for the libraries and the tool, but not for the tests. Debug builds that request no optimization get what debuggers
# can follow: it takes no longer to compile, and the tests wait for the libraries and the tool half as long. To see every
# variable: -DTP_PRODUCT_FLAGS=-O0
set(TP_PRODUCT_FLAGS "" CACHE STRING "Flags for the libraries and the tool, but not for the tests, separated by semicolons")
mark_as_advanced(TP_PRODUCT_FLAGS)
set(tp_product_flags ${TP_PRODUCT_FLAGS})
if(CMAKE_BUILD_TYPE STREQUAL Debug AND NOT MSVC
        AND NOT "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_DEBUG} ${TP_PRODUCT_FLAGS}" MATCHES "-O")
    list(APPEND tp_product_flags -Og)
endif()

# For the libraries and the tool. What most of their sources include is taken in once for all of them, since it is most of
# what compiling takes. That each source includes what it uses is shown by scripts/tidy.sh, and for both Qts by the Debian
# packages, which do without. So do projects that include this one: they may have precompiled headers of their own.
set(TP_PRECOMPILED_PRODUCT ON CACHE BOOL "Compile the headers that the libraries and the tool share once")
mark_as_advanced(TP_PRECOMPILED_PRODUCT)
function(tp_product_defaults target)
    tp_target_defaults(${target})
    target_compile_options(${target} PRIVATE ${tp_product_flags})
    if(NOT TP_PRECOMPILED_PRODUCT OR NOT PROJECT_IS_TOP_LEVEL)
        return()
    endif()
    if(NOT TARGET tunerproperties_pch)
        file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/tunerproperties_pch.cpp CONTENT "// A target takes a source.\n")
        add_library(tunerproperties_pch OBJECT ${PROJECT_BINARY_DIR}/tunerproperties_pch.cpp)
        tp_target_defaults(tunerproperties_pch)
        target_compile_options(tunerproperties_pch PRIVATE ${tp_product_flags})
        target_link_libraries(tunerproperties_pch PRIVATE ${tp_qt}::Core)
        target_precompile_headers(tunerproperties_pch PRIVATE
            <algorithm> <functional> <limits> <memory> <optional> <utility> <vector>
            <QByteArray> <QDataStream> <QFile> <QHash> <QString> <QStringList> <QVariant> <QVector>
            <QXmlStreamReader> <QXmlStreamWriter>)
    endif()
    target_precompile_headers(${target} REUSE_FROM tunerproperties_pch)
endfunction()

# For installed targets: source paths in debug information are relative to the top of the project, because absolute ones
# of the build machine mean nothing elsewhere.
function(tp_relative_places target)
    if(TUNERPROPERTIES_HAS_MACRO_PREFIX_MAP)
        target_compile_options(${target} PRIVATE -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
    endif()
endfunction()

# The objects of a library. They are a target of their own for the programs that contain them.
function(tp_add_objects library)
    set(objects ${library}Objects)
    add_library(${objects} OBJECT ${ARGN})
    tp_product_defaults(${objects})
    tp_relative_places(${objects})
    set_target_properties(${objects} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    if(BUILD_SHARED_LIBS)
        target_compile_definitions(${objects} PRIVATE ${library}_EXPORTS)
    endif()
    target_include_directories(${objects} PRIVATE
        ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/include ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${objects} PRIVATE ${tp_qt}::Core)
endfunction()

# A library, shared or static. Its public headers are those in the folder include/<folder>, and <folder/Export.h>, which is generated.
function(tp_library_defaults target folder macro)
    tp_product_defaults(${target})
    # In a build there is one Qt, so the plain names always work; the names of the package depend on it.
    set(namespaces TunerProperties ${TunerProperties_PACKAGE})
    list(REMOVE_DUPLICATES namespaces)
    foreach(namespace IN LISTS namespaces)
        add_library(${namespace}::${target} ALIAS ${target})
    endforeach()
    generate_export_header(${target}
        EXPORT_MACRO_NAME ${macro}
        EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/include/${folder}/Export.h)
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${target} PUBLIC $<UPPER_CASE:${target}>_STATIC_DEFINE)
    endif()
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/${folder}/*.h)
    target_sources(${target} PUBLIC FILE_SET HEADERS
        BASE_DIRS ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/include
        FILES ${headers} ${PROJECT_BINARY_DIR}/include/${folder}/Export.h)
    target_link_libraries(${target} PUBLIC ${tp_qt}::Core)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${target}${TunerProperties_NAME_SUFFIX}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        POSITION_INDEPENDENT_CODE ON # also of a static library, which may be linked into plug-ins
        # Otherwise CMake reserves space for another path with empty entries, which mean the current folder.
        BUILD_WITH_INSTALL_RPATH ON
        INSTALL_RPATH "${tp_own_folder}")
    tp_relative_places(${target})
    if(TUNERPROPERTIES_HAS_NO_UNDEFINED AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
    if(TUNERPROPERTIES_INSTALL)
        install(TARGETS ${target} EXPORT TunerPropertiesTargets
            LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
            RUNTIME COMPONENT runtime
            ARCHIVE COMPONENT development
            FILE_SET HEADERS COMPONENT development)
    endif()
endfunction()
