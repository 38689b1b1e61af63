# With symbols in every build, of a form that Wine reads.
set_source_files_properties("${CMAKE_CURRENT_SOURCE_DIR}/foundation/ErrorReportTests.cpp"
    PROPERTIES COMPILE_OPTIONS -gdwarf-4 SKIP_PRECOMPILE_HEADERS ON)
