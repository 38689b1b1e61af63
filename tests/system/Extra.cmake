# The programs that the tests start: an ordinary one, and one that the service manager starts.
foreach(program child service)
    add_executable(system_${program} "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/programs/${program}.cpp")
    target_link_libraries(system_${program} PRIVATE tarn_warnings advapi32)
    target_link_options(system_${program} PRIVATE -static)
    # Its own driver puts the threads' library before what needs it.
    target_link_libraries(system_${program} PRIVATE $<$<CXX_COMPILER_ID:Clang>:-lstdc++;-lgcc_eh;-lpthread>)
    add_dependencies(${test} system_${program})
endforeach()
target_link_options(system_child PRIVATE -municode)
