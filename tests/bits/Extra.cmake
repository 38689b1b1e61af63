# The simulated chip of the example, as the device on a bus.
set(examples "${PROJECT_SOURCE_DIR}/examples")
target_sources(${test} PRIVATE
    "${examples}/i2c-eeprom/Eeprom24C02.cpp" "${examples}/i2c-eeprom/TimingDiagram.cpp")
target_include_directories(${test} PRIVATE "${examples}/i2c-eeprom")
