#pragma once

namespace support {
/// Whether the tests run under Wine, for what differs there (docs/wine.md).
bool isWine();
/// The first number of Wine's version; 0 on Windows.
int wineVersion();
} // namespace support
