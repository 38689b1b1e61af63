target_sources(${test} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/Resources.rc")

# The example with all of them, as its script works it: a control that is missing or fails ends it with an error.
if(TARN_BUILD_EXAMPLES)
    add_test(NAME controls-script WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
        COMMAND controls --script "${PROJECT_SOURCE_DIR}/examples/controls/moons.txt" --screenshot controls.png)
    set_tests_properties(controls-script PROPERTIES TIMEOUT 120 RESOURCE_LOCK screen)
endif()
