# The picture writer of the examples.
add_subdirectory("${PROJECT_SOURCE_DIR}/examples/support" "${PROJECT_BINARY_DIR}/example-support")
target_link_libraries(${test} PRIVATE example_support)
target_sources(${test} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/Resources.rc")
