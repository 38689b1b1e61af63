target_sources(${test} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/dialogs/Dialogs.rc")
target_link_libraries(${test} PRIVATE winspool)
