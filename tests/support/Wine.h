#pragma once

namespace support {
/// Whether the tests run under Wine, for what differs there (docs/wine.md).
bool isWine();
} // namespace support
