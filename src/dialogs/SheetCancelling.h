#pragma once

namespace tarn {
/// Whether the calling thread has a sheet that ends because of an exception: its pages are not asked then.
bool isCancellingSheet() noexcept;
} // namespace tarn
