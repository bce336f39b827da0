# Run by CPack when the trees of the packages are complete: Debian requires that manual pages and changelogs are
# compressed, without names and times of files in them.
file(GLOB_RECURSE to_compress ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*)
list(FILTER to_compress INCLUDE REGEX "/changelog\\.Debian$|/share/man/man[1-9]/[^/]+\\.[1-9]$")
foreach(file IN LISTS to_compress)
    execute_process(COMMAND gzip -9 --no-name ${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
