add_library(streams_plugin MODULE "${CMAKE_CURRENT_SOURCE_DIR}/streams/plugin/Plugin.cpp")
set_target_properties(streams_plugin PROPERTIES
    PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
target_link_libraries(streams_plugin PRIVATE tarn tarn_warnings)
add_dependencies(${test} streams_plugin)
