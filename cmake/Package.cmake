# The archives that are handed out: one with all that a user needs, one with the symbols for debugging.

set(CPACK_COMPONENTS_ALL Unspecified)
# Symbols lie in a file of their own, which the stripped DLL names, so that a debugger finds it.
if(CMAKE_BUILD_TYPE STREQUAL "RelWithDebInfo")
    add_custom_command(TARGET tarn POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:tarn> $<TARGET_FILE:tarn>.debug
        COMMAND ${CMAKE_STRIP} --strip-all $<TARGET_FILE:tarn>
        COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=$<TARGET_FILE:tarn>.debug $<TARGET_FILE:tarn> VERBATIM)
    install(FILES "$<TARGET_FILE:tarn>.debug" DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT symbols)
    list(APPEND CPACK_COMPONENTS_ALL symbols)
endif()

# The run-time DLLs and the Boost headers are other people's: their terms go with them.
set(licences "${CMAKE_INSTALL_DATAROOTDIR}/doc/tarn/licences")
string(REGEX REPLACE "-.*" "" architecture "${TARN_TRIPLET}")
string(REPLACE "_" "-" debian_architecture "${architecture}")
foreach(package gcc-mingw-w64-${debian_architecture}-posix-runtime mingw-w64-common libboost-dev)
    if(EXISTS "/usr/share/doc/${package}/copyright")
        install(FILES "/usr/share/doc/${package}/copyright" DESTINATION "${licences}" RENAME "${package}.txt")
    endif()
endforeach()
if(EXISTS /usr/share/common-licenses/GPL-3)
    install(FILES /usr/share/common-licenses/GPL-3 DESTINATION "${licences}" RENAME GPL-3.txt)
endif()
install(FILES README.md DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/tarn")
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/tarn"
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.png")

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME tarn)
set(CPACK_PACKAGE_VENDOR Tarn++)
set(CPACK_SYSTEM_NAME "windows-${architecture}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_ARCHIVE_UNSPECIFIED_FILE_NAME "tarn-${PROJECT_VERSION}-windows-${architecture}")
set(CPACK_ARCHIVE_SYMBOLS_FILE_NAME "tarn-${PROJECT_VERSION}-windows-${architecture}-symbols")
include(CPack)
