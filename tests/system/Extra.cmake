# What the tests of processes start.
add_executable(system_child "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/programs/child.cpp")
target_link_libraries(system_child PRIVATE tarn_warnings)
target_link_options(system_child PRIVATE -static -municode)
# Its own driver puts the threads' library before what needs it.
target_link_libraries(system_child PRIVATE $<$<CXX_COMPILER_ID:Clang>:-lstdc++;-lgcc_eh;-lpthread>)
add_dependencies(${test} system_child)
