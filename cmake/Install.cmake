# What a user installs: headers, DLLs, import library and the CMake package.
include(CMakePackageConfigHelpers)

install(TARGETS tarn tarn_boost EXPORT tarn
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${TARN_RUNTIME_COPIES} DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY include/tarn DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
# The Boost headers that the public headers include, in a folder of their own, so that a program that
# brings another Boost meets that one first. The compiler tells which they are.
file(GLOB public_headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/include/tarn/*.h")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${public_headers})
execute_process(
    COMMAND ${TARN_GCC} -std=c++20 -M -fno-canonical-system-headers "-I${PROJECT_SOURCE_DIR}/include" -isystem "${TARN_BOOST_VIEW}"
        "${PROJECT_SOURCE_DIR}/include/tarn/tarn.h"
    OUTPUT_VARIABLE dependencies COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "boost-include/boost/[^ \n\\]+" boost_headers "${dependencies}")
list(REMOVE_DUPLICATES boost_headers)
foreach(header IN LISTS boost_headers)
    string(REPLACE "boost-include/" "" header "${header}")
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${TARN_BOOST_INCLUDE}/${header}" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tarn-boost/${folder})
endforeach()
# Those for other compilers, which the configuration chooses from.
install(DIRECTORY "${TARN_BOOST_INCLUDE}/boost/config" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tarn-boost/boost)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tarn)
install(EXPORT tarn NAMESPACE tarn:: FILE tarnTargets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/tarnConfig.cmake.in "${PROJECT_BINARY_DIR}/tarnConfig.cmake"
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/tarnConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/tarnConfig.cmake" "${PROJECT_BINARY_DIR}/tarnConfigVersion.cmake"
    cmake/Program.cmake cmake/Program.manifest.in cmake/Program.rc.in
    DESTINATION ${package_dir})
