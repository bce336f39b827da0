# The major version of Qt that everything is built with, chosen by -DQT_MAJOR_VERSION=5|6, and the names that depend on it.
# What is built with Qt 5 has the plain names; what is built with another Qt can be installed beside it:
#
#   CMake package and namespace   TunerProperties     TunerPropertiesQt6
#   libraries                     libReportBase.so    libReportBase-qt6.so
#   pkg-config                    tunerproperties     tunerproperties-qt6
#
# Headers, catalogs and schemas are the same files for both.
set(QT_MAJOR_VERSION 5 CACHE STRING "Major version of Qt to build with, 5 or 6")
set_property(CACHE QT_MAJOR_VERSION PROPERTY STRINGS 5 6)
if(QT_MAJOR_VERSION EQUAL 5)
    set(TunerProperties_QT_MINIMUM 5.15)
    set(TunerProperties_PACKAGE TunerProperties)
    set(TunerProperties_NAME_SUFFIX "")
elseif(QT_MAJOR_VERSION EQUAL 6)
    set(TunerProperties_QT_MINIMUM 6.4)
    set(TunerProperties_PACKAGE TunerPropertiesQt6)
    set(TunerProperties_NAME_SUFFIX -qt6)
else()
    message(FATAL_ERROR "QT_MAJOR_VERSION is '${QT_MAJOR_VERSION}', but the library can be built with Qt 5 or 6 only.")
endif()
set(tp_qt Qt${QT_MAJOR_VERSION}) # of its targets and packages

# Our targets refer to Qt's, so they must also be visible in a project that includes this one.
find_package(${tp_qt} ${TunerProperties_QT_MINIMUM} REQUIRED COMPONENTS Core GLOBAL)
