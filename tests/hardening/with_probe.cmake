# Included by project(): adds a program that can overflow a buffer.
cmake_language(EVAL CODE "cmake_language(DEFER CALL include [[${CMAKE_CURRENT_LIST_DIR}/probe.cmake]])")
