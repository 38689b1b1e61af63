# A server of each kind for the system to find, load and start.
add_library(com_test_inproc SHARED "${CMAKE_CURRENT_SOURCE_DIR}/com/servers/inproc.cpp")
set_target_properties(com_test_inproc PROPERTIES PREFIX "")
add_executable(com_test_local "${CMAKE_CURRENT_SOURCE_DIR}/com/servers/local.cpp")
foreach(server com_test_inproc com_test_local)
    target_link_libraries(${server} PRIVATE tarn::tarn tarn_warnings)
    add_dependencies(${test} ${server})
endforeach()

# The lists of names, as a user makes them.
set(names "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/com-names")
add_custom_command(OUTPUT "${names}/HRESULTs.txt" "${names}/GUIDs.txt"
    COMMAND "${PROJECT_SOURCE_DIR}/tools/com-names" "${names}"
    DEPENDS "${PROJECT_SOURCE_DIR}/tools/com-names" VERBATIM)
add_custom_target(com_test_names DEPENDS "${names}/HRESULTs.txt" "${names}/GUIDs.txt")
add_dependencies(${test} com_test_names)

# The example's client hears the events and errors of its server.
if(TARN_BUILD_EXAMPLES)
    add_test(NAME com-server-example COMMAND com-client)
    set_tests_properties(com-server-example PROPERTIES TIMEOUT 120 PASS_REGULAR_EXPRESSION
        "An event: Hello, COM!.*Greetings so far: 3.*Nobody has an empty name.*Unregistered")
endif()
