# The examples' parts that are worth testing: the simulated chip on a bus, and the packet decoder.
set(examples "${PROJECT_SOURCE_DIR}/examples")
target_sources(${test} PRIVATE
    "${examples}/i2c-eeprom/Eeprom24C02.cpp" "${examples}/i2c-eeprom/TimingDiagram.cpp"
    "${examples}/teletext-header/PageHeader.cpp")
target_include_directories(${test} PRIVATE "${examples}/i2c-eeprom" "${examples}/teletext-header")
target_compile_definitions(${test} PRIVATE TELETEXT_CAPTURE="${examples}/teletext-header/capture.t42")
