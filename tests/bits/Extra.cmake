# The examples' parts that are worth testing: the simulated chip on a bus, and the packet decoder.
set(examples "${PROJECT_SOURCE_DIR}/examples")
target_sources(${test} PRIVATE
    "${examples}/i2c-eeprom/Eeprom24C02.cpp" "${examples}/i2c-eeprom/TimingDiagram.cpp"
    "${examples}/teletext-header/PageHeader.cpp")
target_include_directories(${test} PRIVATE "${examples}/i2c-eeprom" "${examples}/teletext-header")
target_compile_definitions(${test} PRIVATE TELETEXT_CAPTURE="${examples}/teletext-header/capture.t42")
# One of its tests takes 512 MB in one piece, which a 32-bit program has where it may use all four gigabytes.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_link_options(${test} PRIVATE LINKER:--large-address-aware)
endif()
