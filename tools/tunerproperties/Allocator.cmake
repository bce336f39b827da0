# Links the tool, and nothing else, with mimalloc: the allocator of the C library takes a fifth more time to validate many
# or large documents, see docs/PERFORMANCE.md. The libraries leave the choice to the programs that use them.
#
# A sanitizer has an allocator of its own. Only ELF lets a library replace malloc() by its place in the order of search, and
# a program run a function before the initialization of libraries.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize" OR NOT CMAKE_EXECUTABLE_FORMAT STREQUAL ELF OR TUNERPROPERTIES_PORTABLE)
    return()
endif()
if(TUNERPROPERTIES_TOOL_MIMALLOC)
    find_package(mimalloc 2.0 QUIET CONFIG)
    if(NOT mimalloc_FOUND)
        message(STATUS "mimalloc (libmimalloc-dev) is not found: the tool uses the allocator of the C library")
    endif()
endif()

# The address space that the first allocations take: mimalloc reserves a segment of 32 MiB.
target_sources(tunerproperties PRIVATE console/FirstMemory.cpp)
set(first_mebibytes $<IF:$<BOOL:${mimalloc_FOUND}>,33,1>)
set_source_files_properties(console/FirstMemory.cpp PROPERTIES
    COMPILE_DEFINITIONS FIRST_MEBIBYTES=${first_mebibytes})
if(NOT TUNERPROPERTIES_TOOL_MIMALLOC OR NOT mimalloc_FOUND)
    return()
endif()

# The C++ library comes first, since mimalloc also defines operator new. Built as C, as Debian builds it, that ends the
# process when memory runs out, where the tool reports it. The one of the C++ library calls malloc() and throws.
set(cxx_library ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
list(FILTER cxx_library INCLUDE REGEX "^(std)?c\\+\\+$")
# Whether the program itself calls malloc() does not matter: the libraries do.
target_link_libraries(tunerproperties PRIVATE
    -Wl,--push-state,--no-as-needed ${cxx_library} mimalloc -Wl,--pop-state)
set_target_properties(tunerproperties PROPERTIES TP_HAS_MIMALLOC ON)
