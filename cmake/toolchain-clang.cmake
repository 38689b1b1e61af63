# Clang with the headers, libraries and run time of the MinGW-w64 GCC, so that both compilers' programs use one DLL.
include("${CMAKE_CURRENT_LIST_DIR}/toolchain-mingw.cmake")
set(TARN_GCC ${CMAKE_CXX_COMPILER})
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET ${TARN_TRIPLET})
foreach(tool AR RANLIB STRIP OBJCOPY)
    string(TOLOWER ${tool} program)
    find_program(CMAKE_${tool} ${TARN_TRIPLET}-${program} REQUIRED)
endforeach()

# Clang does not find them under the name of the threads' model.
execute_process(COMMAND ${TARN_GCC} -print-libgcc-file-name OUTPUT_VARIABLE libgcc COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(gcc_folder "${libgcc}" DIRECTORY)
string(CONCAT CMAKE_CXX_FLAGS_INIT "-nostdinc++ -isystem ${gcc_folder}/include/c++"
    " -isystem ${gcc_folder}/include/c++/${TARN_TRIPLET} -isystem ${gcc_folder}/include/c++/backward"
    " -B${gcc_folder} -femulated-tls" # As GCC keeps what belongs to a thread.
    " -Wno-unused-command-line-argument")
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-L${gcc_folder}")
endforeach()
# GCC's own driver adds it.
link_libraries(pthread)
