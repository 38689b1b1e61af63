#pragma once

#include <tarn/Windows.h>

namespace tarn {
/// Takes the next message out of the thread's queue (of `hwnd`, numbered from `min` to `max`; null and 0: any);
/// false when there is none. Meanwhile the system runs handlers for messages that other threads sent; what
/// they throw comes out of this call, or out of the next one if a message had just been taken.
bool takeMessage(MSG& msg, HWND hwnd, UINT min, UINT max);
} // namespace tarn
