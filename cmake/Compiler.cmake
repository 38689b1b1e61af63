# How this project's own code is compiled; users of the library inherit none of it.

set(CMAKE_CXX_EXTENSIONS OFF)

find_program(TARN_CCACHE ccache)
if(TARN_CCACHE AND PROJECT_IS_TOP_LEVEL AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # What precompiled headers need. With paths below the source folder taken as relative ones, all clones share the
    # cache.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_PCH_EXTSUM=1
        CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} "${PROJECT_SOURCE_DIR}/cmake/cached")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
endif()

# No path of the machine that builds goes into what is built.
add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)

add_library(tarn_warnings INTERFACE)
target_compile_options(tarn_warnings INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion>
    # What GCC leaves out of these, too. Meant are handlers of one name in two bases (Window, OwnerDrawable), objects that
    # are deleted as what they are, and the type of what a call gives.
    "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-unknown-warning-option;-Wno-sign-conversion;-Wno-overloaded-virtual>"
    "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-delete-non-abstract-non-virtual-dtor;-Wno-potentially-evaluated-expression>"
    $<$<AND:$<BOOL:${TARN_WARNINGS_AS_ERRORS}>,$<COMPILE_LANGUAGE:CXX>>:-Werror>)
