# Boost's headers lie in the host's include folder, which must not be on a cross compiler's path: a
# link in the build tree shows the compiler boost/ and nothing beside it.
find_path(TARN_BOOST_INCLUDE boost/noncopyable.hpp NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(TARN_BOOST_VIEW "${PROJECT_BINARY_DIR}/boost-include")
file(MAKE_DIRECTORY "${TARN_BOOST_VIEW}")
file(CREATE_LINK "${TARN_BOOST_INCLUDE}/boost" "${TARN_BOOST_VIEW}/boost" SYMBOLIC)

add_library(tarn_boost INTERFACE)
set_target_properties(tarn_boost PROPERTIES EXPORT_NAME boost)
target_include_directories(tarn_boost SYSTEM INTERFACE
    "$<BUILD_INTERFACE:${TARN_BOOST_VIEW}>" "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/tarn-boost>")
