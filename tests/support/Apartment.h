#pragma once

#include <tarn/Exception.h>

#include <objbase.h>

namespace support {
/// COM on this thread, for as long as it lives.
struct Apartment {
    Apartment() { tarn::HRESULTHolder::throwOnError(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};
} // namespace support
