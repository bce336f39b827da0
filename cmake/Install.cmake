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

# find_package(TunerProperties)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/TunerProperties)
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/TunerPropertiesConfig.cmake.in
    ${PROJECT_BINARY_DIR}/cmake/TunerPropertiesConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cmake/TunerPropertiesConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
        ${PROJECT_BINARY_DIR}/cmake/TunerPropertiesConfig.cmake
        ${PROJECT_BINARY_DIR}/cmake/TunerPropertiesConfigVersion.cmake
    DESTINATION ${package_dir}
    COMPONENT development)
install(EXPORT TunerPropertiesTargets
    NAMESPACE TunerProperties::
    DESTINATION ${package_dir}
    COMPONENT development)

# pkg-config tunerproperties, and tunerdocuments for the library above it: the folders are relative to the files.
set(pkgconfig_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig ${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH libdir_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH includedir_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
foreach(library IN ITEMS tunerproperties tunerdocuments)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${library}.pc.in ${PROJECT_BINARY_DIR}/cmake/${library}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/cmake/${library}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
endforeach()

# The examples, with a project file that builds them against the installed libraries.
set(examples_dir ${CMAKE_INSTALL_DOCDIR}/examples)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/
    DESTINATION ${examples_dir}
    COMPONENT development
    FILES_MATCHING PATTERN "*.cpp" PATTERN "*.xml" PATTERN "README.md")
install(FILES ${PROJECT_SOURCE_DIR}/packaging/examples/CMakeLists.txt
    DESTINATION ${examples_dir}
    COMPONENT development)
