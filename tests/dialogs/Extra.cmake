target_sources(${test} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/dialogs/Dialogs.rc")
