# What a program needs besides its code: a manifest, a version, an icon, and the DLLs beside it. Part of the package, too.

# Copies what a program needs at run time beside it whenever it is built: the library and the compiler's run-time DLLs,
# which the two must share.
function(tarn_deploy program)
    get_target_property(dlls tarn::tarn TARN_RUNTIME_DLLS)
    list(TRANSFORM dlls PREPEND "$<TARGET_FILE_DIR:tarn::tarn>/")
    list(PREPEND dlls "$<TARGET_FILE:tarn::tarn>")
    add_custom_command(TARGET ${program} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E copy_if_different ${dlls} "$<TARGET_FILE_DIR:${program}>" VERBATIM)
endfunction()

# tarn_add_program(name SOURCES source...
#     [WIN32]             without a window for text
#     [WIDE_MAIN]         begins with wmain, or with wWinMain if it is WIN32
#     [UTF8]              narrow text is UTF-8, from Windows 10 of 2019 on
#     [ICON file]         becomes the icon with the number 1
#     [VERSION a.b.c.d]   one to four numbers; the project's when it is left out
#     [DESCRIPTION text]) what the system calls it; the name when it is left out
# The program is an ordinary target, linked to tarn::tarn. Resources of its own are sources.
function(tarn_add_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WIN32;WIDE_MAIN;UTF8" "ICON;VERSION;DESCRIPTION" "SOURCES")
    if(arg_UNPARSED_ARGUMENTS OR arg_KEYWORDS_MISSING_VALUES OR NOT arg_SOURCES)
        message(FATAL_ERROR "tarn_add_program(${name}): SOURCES are missing, or not understood: "
            "${arg_UNPARSED_ARGUMENTS} ${arg_KEYWORDS_MISSING_VALUES}")
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE tarn::tarn)
    if(arg_WIN32)
        set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ON)
    endif()
    if(arg_WIDE_MAIN)
        target_link_options(${name} PRIVATE -municode)
    endif()
    tarn_add_program_resources(${name})
    tarn_deploy(${name})
endfunction()

# The arguments of tarn_add_program become resources, which the function reads where it is called.
function(tarn_add_program_resources name)
    set(code_page "")
    if(arg_UTF8)
        set(code_page "<activeCodePage xmlns=\"http://schemas.microsoft.com/SMI/2019/WindowsSettings\">UTF-8</activeCodePage>")
    endif()
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}-program")
    configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/Program.manifest.in" "${folder}/${name}.manifest" @ONLY)
    set(resources "1 24 \"${folder}/${name}.manifest\"\n")
    set(files "${folder}/${name}.manifest")

    if(arg_ICON)
        get_filename_component(icon "${arg_ICON}" ABSOLUTE)
        string(APPEND resources "1 ICON \"${icon}\"\n")
        list(APPEND files "${icon}")
    endif()

    if(NOT DEFINED arg_VERSION)
        set(arg_VERSION "${PROJECT_VERSION}")
    endif()
    if(NOT arg_VERSION STREQUAL "")
        if(NOT arg_VERSION MATCHES "^[0-9]+(\\.[0-9]+)?(\\.[0-9]+)?(\\.[0-9]+)?$")
            message(FATAL_ERROR "tarn_add_program(${name}): VERSION ${arg_VERSION} is not one to four numbers")
        endif()
        if(NOT DEFINED arg_DESCRIPTION)
            set(arg_DESCRIPTION "${name}")
        endif()
        string(REPLACE "\\" "\\\\" arg_DESCRIPTION "${arg_DESCRIPTION}")
        string(REPLACE "\"" "\"\"" arg_DESCRIPTION "${arg_DESCRIPTION}")
        string(REPLACE "." "," version_numbers "${arg_VERSION}")
        file(READ "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/Program.rc.in" version)
        string(CONFIGURE "${version}" version @ONLY)
        string(APPEND resources "${version}")
    endif()

    file(CONFIGURE OUTPUT "${folder}/${name}.rc" CONTENT "@resources@" @ONLY)
    set_property(SOURCE "${folder}/${name}.rc" PROPERTY OBJECT_DEPENDS "${files}")
    target_sources(${name} PRIVATE "${folder}/${name}.rc")
endfunction()
