set(TARN_TRIPLET i686-w64-mingw32)
include("${CMAKE_CURRENT_LIST_DIR}/toolchain-clang.cmake")
