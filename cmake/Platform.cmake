# What depends on the system. A source that ends in _linux.cpp uses functions of Linux; the one that ends in _portable.cpp has
# the same functions by what Qt and C++ have on every system.
set(tp_platform linux)
if(TUNERPROPERTIES_PORTABLE)
    set(tp_platform portable)
endif()

# TranslationCenter searches for catalogs from the folder of its code: of the shared library, or of the program, if that
# contains the code or no other folder can be found. Here is where these are installed and built.
if(BUILD_SHARED_LIBS AND NOT TUNERPROPERTIES_PORTABLE)
    set(tp_code_folder ${CMAKE_INSTALL_FULL_LIBDIR})
    set(tp_code_output ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
else()
    set(tp_code_folder ${CMAKE_INSTALL_FULL_BINDIR})
    set(tp_code_output ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
endif()

set(tp_dl_option) # not every system has a library for it
if(CMAKE_DL_LIBS)
    set(tp_dl_option -l${CMAKE_DL_LIBS})
endif()
