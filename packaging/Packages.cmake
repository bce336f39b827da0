# The Debian packages, made by CPack from the three components; scripts/package.sh builds and tries them.

# The version of the packages is the newest one in their changelog.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/debian/changelog debian_version LIMIT_COUNT 1)
string(REGEX REPLACE "^tunerproperties \\((.*)-([0-9]+)\\).*" "\\1;\\2" debian_version "${debian_version}")
list(POP_BACK debian_version debian_revision)
if(NOT debian_version STREQUAL PROJECT_VERSION)
    message(FATAL_ERROR "packaging/debian/changelog begins with version ${debian_version}, not ${PROJECT_VERSION}.")
endif()

# Files that only Debian requires in every package: the license, and the changelog of the packaging.
set(package_of_runtime libtunerproperties${PROJECT_VERSION_MAJOR})
set(package_of_development libtunerproperties-dev)
set(package_of_tools tunerproperties-tools)
foreach(component IN ITEMS runtime development tools)
    set(package ${package_of_${component}})
    set(doc_dir ${CMAKE_INSTALL_DATADIR}/doc/${package})
    install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/copyright DESTINATION ${doc_dir} COMPONENT ${component})
    install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/changelog
        DESTINATION ${doc_dir}
        RENAME changelog.Debian
        COMPONENT ${component})
    configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/lintian-overrides.in
        ${PROJECT_BINARY_DIR}/debian/${package}.lintian-overrides @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/debian/${package}.lintian-overrides
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME ${package}
        COMPONENT ${component})
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_COMPONENTS_ALL runtime development tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/finish_trees.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/finish_packages.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION ${debian_version})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${debian_revision})
# Control files must name a maintainer with an address. Nobody has this one: its domain is reserved for examples.
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "TunerProperties project <packages@tunerproperties.invalid>")
set(CPACK_DEBIAN_PACKAGE_SOURCE tunerproperties)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The dependencies follow from the libraries that programs and libraries are linked with. Our libraries also use each
# other, and dpkg does not know them unless they are installed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(same_version "${package_of_runtime} (= ${debian_version}-${debian_revision})")

# Each description has its own first line, which is the summary.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
string(CONCAT about_the_model
    "TunerProperties describes a tuner resource of a measurement job: what kind of\n"
    "tuner it is, its start-up modes and bandwidths, and a tree of components with\n"
    "typed, configurable values. Descriptions are checked, and exchanged as XML,\n"
    "tagged binary records or binary snapshots.\n"
    "\n")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
string(CONCAT CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "data model of a radio tuner in a measurement job - libraries\n"
    ${about_the_model}
    "This package contains the libraries and the catalogs for names\n"
    "in German and English.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same_version}, qtbase5-dev (>= 5.15)")
string(CONCAT CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "data model of a radio tuner in a measurement job - development files\n"
    ${about_the_model}
    "This package contains the files to build programs with the libraries, by\n"
    "CMake or pkg-config, the XML Schema of the documents, and examples.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
string(CONCAT CPACK_COMPONENT_TOOLS_DESCRIPTION
    "data model of a radio tuner in a measurement job - command-line tool\n"
    ${about_the_model}
    "This package contains the program tunerproperties, which shows, checks,\n"
    "compares, changes and converts such descriptions.")

include(CPack)
