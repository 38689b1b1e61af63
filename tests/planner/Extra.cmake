# The planner without its windows, and the thread that works for them.
set(planner "${PROJECT_SOURCE_DIR}/examples/planner")
file(GLOB model CONFIGURE_DEPENDS "${planner}/model/*.cpp")
target_sources(${test} PRIVATE ${model} "${planner}/BackgroundWork.cpp")
target_include_directories(${test} PRIVATE "${planner}" "${planner}/model")
target_compile_definitions(${test} PRIVATE PLANNER_TEAM="${planner}/team.ics")

# And the whole of it, as its script works it: what that expects and does not find ends it with a failure.
if(TARN_BUILD_EXAMPLES)
    set(folder_of_tour "${CMAKE_CURRENT_BINARY_DIR}/planner-tour")
    file(MAKE_DIRECTORY "${folder_of_tour}")
    add_test(NAME planner-tour WORKING_DIRECTORY "${folder_of_tour}"
        COMMAND planner --script "${planner}/tour.txt" --screenshot planner.png)
    set_tests_properties(planner-tour PROPERTIES TIMEOUT 300 RESOURCE_LOCK screen)
endif()
