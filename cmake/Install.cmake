# What is installed besides the libraries and the tool, whose rules are in their own files. There are three components:
# runtime for programs that are linked with the libraries, development for building such programs, tools for people.
#
# No installed file contains a path of this machine, so the tree may be moved.

include(CMakePackageConfigHelpers)

install(FILES
        ${PROJECT_SOURCE_DIR}/share/model.json
        ${PROJECT_SOURCE_DIR}/share/tuner-properties.xsd
        ${PROJECT_SOURCE_DIR}/share/tuner-properties-author.xsd
        ${PROJECT_SOURCE_DIR}/share/tuner-properties.schema.json
    DESTINATION ${CMAKE_INSTALL_DATADIR}/tunerproperties
    COMPONENT development)

install(FILES ${PROJECT_SOURCE_DIR}/SECURITY.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR}
    COMPONENT development)

# find_package(TunerProperties), or TunerPropertiesQt6 if that is what it is built with
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${TunerProperties_PACKAGE})
set(package_files ${PROJECT_BINARY_DIR}/cmake/${TunerProperties_PACKAGE})
set(translations_dir ${CMAKE_INSTALL_DATADIR}/tunerproperties-${PROJECT_VERSION_MAJOR}/translations)
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/TunerPropertiesConfig.cmake.in
    ${package_files}Config.cmake
    INSTALL_DESTINATION ${package_dir}
    PATH_VARS translations_dir
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${package_files}ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${package_files}Config.cmake ${package_files}ConfigVersion.cmake
    DESTINATION ${package_dir}
    COMPONENT development)
install(EXPORT TunerPropertiesTargets
    FILE ${TunerProperties_PACKAGE}Targets.cmake
    NAMESPACE ${TunerProperties_PACKAGE}::
    DESTINATION ${package_dir}
    COMPONENT development)

# pkg-config, with a file for each library. The folders are relative to the files.
set(pkgconfig_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig ${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH libdir_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH datadir_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_DATADIR})
file(RELATIVE_PATH includedir_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")

# tp_install_pkgconfig(library description [REQUIRES library...] [PRIVATE library...] [PRIVATE_PACKAGES package...]
#                      [PRIVATE_LIBS option...])
# REQUIRES are our libraries whose functions a program calls as well; what is private is linked with --static, and always if
# there are no shared libraries, which would bring it along. Static libraries declare themselves as such to their headers.
function(tp_install_pkgconfig library description)
    cmake_parse_arguments(arg "" "" "REQUIRES;PRIVATE;PRIVATE_PACKAGES;PRIVATE_LIBS" ${ARGN})
    foreach(list IN ITEMS REQUIRES PRIVATE)
        list(TRANSFORM arg_${list} TOLOWER)
        list(TRANSFORM arg_${list} APPEND "${TunerProperties_NAME_SUFFIX} = ${PROJECT_VERSION}")
    endforeach()
    list(APPEND arg_REQUIRES "${tp_qt}Core >= ${TunerProperties_QT_MINIMUM}")
    list(APPEND arg_PRIVATE ${arg_PRIVATE_PACKAGES})
    set(libs)
    set(definitions)
    if(NOT BUILD_SHARED_LIBS)
        list(APPEND arg_REQUIRES ${arg_PRIVATE})
        list(JOIN arg_PRIVATE_LIBS " " libs)
        string(TOUPPER "-D${library}_STATIC_DEFINE" definitions)
        set(arg_PRIVATE)
        set(arg_PRIVATE_LIBS)
    endif()
    list(JOIN arg_REQUIRES ", " requires)
    list(JOIN arg_PRIVATE ", " requires_private)
    list(JOIN arg_PRIVATE_LIBS " " libs_private)
    string(TOLOWER ${library}${TunerProperties_NAME_SUFFIX} name)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in ${PROJECT_BINARY_DIR}/cmake/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/cmake/${name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
endfunction()
tp_install_pkgconfig(ReportBase "Loading, saving, exceptions and loggers of objects in a report"
    PRIVATE_PACKAGES zlib)
tp_install_pkgconfig(TavikAppStartUp "Registry of the translations of modules"
    PRIVATE_LIBS ${tp_dl_option})
tp_install_pkgconfig(TunerProperties "${PROJECT_DESCRIPTION}"
    REQUIRES ReportBase PRIVATE TavikAppStartUp)
tp_install_pkgconfig(TunerDocuments "Documents of radio tuner resources in files: any form, problems, paths, differences"
    REQUIRES TunerProperties)

# The examples, with a project file that builds them against the installed libraries.
set(examples_dir ${CMAKE_INSTALL_DOCDIR}/examples)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/
    DESTINATION ${examples_dir}
    COMPONENT development
    FILES_MATCHING PATTERN "*.cpp" PATTERN "*.xml" PATTERN "README.md")
install(FILES ${PROJECT_SOURCE_DIR}/packaging/examples/CMakeLists.txt
    DESTINATION ${examples_dir}
    COMPONENT development)
