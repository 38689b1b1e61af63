# The compiler's run-time libraries as DLLs: exceptions cross the border between a program and the
# library only when both share them, so they must lie beside every program.

set(TARN_RUNTIME_DLLS libstdc++-6.dll libwinpthread-1.dll)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    list(APPEND TARN_RUNTIME_DLLS libgcc_s_dw2-1.dll)
else()
    list(APPEND TARN_RUNTIME_DLLS libgcc_s_seh-1.dll)
endif()

# The compiler that they belong to.
if(NOT TARN_GCC)
    set(TARN_GCC ${CMAKE_CXX_COMPILER})
endif()

# Puts stripped copies beside the programs (libstdc++ is 21 MB before stripping).
function(tarn_copy_runtime target)
    set(copies "")
    foreach(dll IN LISTS TARN_RUNTIME_DLLS)
        execute_process(COMMAND ${TARN_GCC} -print-file-name=${dll}
            OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT IS_ABSOLUTE "${path}")
            find_file(found_${dll} ${dll} PATHS "/usr/${TARN_TRIPLET}/lib" "/usr/${TARN_TRIPLET}/bin"
                NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
            set(path "${found_${dll}}")
        endif()
        set(copy "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll}")
        add_custom_command(OUTPUT "${copy}"
            COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
            COMMAND ${CMAKE_STRIP} --strip-all -o "${copy}" "${path}"
            DEPENDS "${path}" VERBATIM)
        list(APPEND copies "${copy}")
    endforeach()
    add_custom_target(tarn_runtime DEPENDS ${copies})
    add_dependencies(${target} tarn_runtime)
    # For those who deploy programs, with the package, too.
    set_target_properties(${target} PROPERTIES
        TARN_RUNTIME_DLLS "${TARN_RUNTIME_DLLS}" EXPORT_PROPERTIES TARN_RUNTIME_DLLS)
    set(TARN_RUNTIME_COPIES "${copies}" PARENT_SCOPE)
endfunction()
