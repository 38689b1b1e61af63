#pragma once

namespace tarn {
/// Translation of faults for the process, from load to unload; setSETranslator is the public half.
/// Nothing of the library is called for a fault after stop.
bool startSETranslation();
void stopSETranslation();
} // namespace tarn
