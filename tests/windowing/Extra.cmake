# Asks windows for what they tell screen readers.
target_link_libraries(${test} PRIVATE oleacc)

# The tests of the sketch run it and look at its picture.
if(TARN_BUILD_EXAMPLES)
    if(NOT TARGET example_support)
        add_subdirectory("${PROJECT_SOURCE_DIR}/examples/support" "${PROJECT_BINARY_DIR}/example-support")
    endif()
    target_link_libraries(${test} PRIVATE example_support)
    add_dependencies(${test} sketch)
else()
    set_source_files_properties("${CMAKE_CURRENT_SOURCE_DIR}/${folder}/SketchTests.cpp" PROPERTIES HEADER_FILE_ONLY ON)
endif()

# Ends with an exception, which its parent looks at.
add_executable(windowing_uncaught "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/programs/uncaught.cpp")
target_link_libraries(windowing_uncaught PRIVATE tarn::tarn tarn_warnings)
add_dependencies(${test} windowing_uncaught)
