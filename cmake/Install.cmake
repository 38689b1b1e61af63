# What a user installs: headers, DLLs, import library and the CMake package.
include(CMakePackageConfigHelpers)

install(TARGETS tarn tarn_boost EXPORT tarn
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${TARN_RUNTIME_COPIES} DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY include/tarn DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
# The few Boost headers that the public headers include, in a folder of their own, so that a program
# that brings another Boost meets that one first.
install(DIRECTORY "${TARN_BOOST_INCLUDE}/boost/config" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tarn-boost/boost)
install(FILES "${TARN_BOOST_INCLUDE}/boost/noncopyable.hpp" "${TARN_BOOST_INCLUDE}/boost/config.hpp"
    "${TARN_BOOST_INCLUDE}/boost/version.hpp" DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tarn-boost/boost)
install(FILES "${TARN_BOOST_INCLUDE}/boost/core/noncopyable.hpp"
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tarn-boost/boost/core)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tarn)
install(EXPORT tarn NAMESPACE tarn:: FILE tarnTargets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/tarnConfig.cmake.in "${PROJECT_BINARY_DIR}/tarnConfig.cmake"
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/tarnConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/tarnConfig.cmake" "${PROJECT_BINARY_DIR}/tarnConfigVersion.cmake"
    DESTINATION ${package_dir})
