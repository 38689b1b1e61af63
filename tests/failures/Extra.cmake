target_sources(${test} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/Resources.rc"
    "${CMAKE_CURRENT_SOURCE_DIR}/dialogs/Driving.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/dialogs/TestPrinter.cpp")
target_link_libraries(${test} PRIVATE shell32 comctl32 comdlg32 oleacc winspool)
target_compile_definitions(${test} PRIVATE
    FAILING_CALLS_PAGE="${PROJECT_SOURCE_DIR}/docs/failing-calls.md"
    FAILURES_CHILD="cmd /c echo child")
