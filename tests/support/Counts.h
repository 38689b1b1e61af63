#pragma once

#include <cstddef>

// Counters for leaks: the same before and after what leaves nothing over.

namespace support {
/// The bytes in use in all heaps of the process, the runtime library's among them.
std::size_t usedBytes();
/// The process's pens, brushes, bitmaps, device contexts and other objects of the drawing system.
unsigned drawingObjects();
/// The process's windows and menus.
unsigned userObjects();
} // namespace support
