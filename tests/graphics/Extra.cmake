target_sources(${test} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/Resources.rc")
