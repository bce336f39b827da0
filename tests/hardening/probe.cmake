add_executable(probe ${CMAKE_CURRENT_LIST_DIR}/probe.cpp)
tp_target_defaults(probe)
target_link_libraries(probe PRIVATE TavikAppStartUp)
