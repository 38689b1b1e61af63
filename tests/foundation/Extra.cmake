# With symbols in every build, of a form that Wine reads.
set_source_files_properties("${CMAKE_CURRENT_SOURCE_DIR}/foundation/ErrorReportTests.cpp"
    PROPERTIES COMPILE_OPTIONS -gdwarf-4 SKIP_PRECOMPILE_HEADERS ON)

# What the tour says of a fault, in each edition.
if(TARN_BUILD_EXAMPLES)
    add_test(NAME tour-fault COMMAND tour foundation)
    set_tests_properties(tour-fault PROPERTIES TIMEOUT 120 PASS_REGULAR_EXPRESSION
        "a null pointer +Access violation writing 0x0 at tour.exe\\+0x[0-9a-f]+, and the program goes on")
endif()
