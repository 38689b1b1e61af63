#include "Closing.h"

#include <tarn/Windows.h>

namespace tarn {
namespace {
void tellDebugger(const char* what) noexcept
{
    OutputDebugStringA("Tarn++: a failure that could not be thrown was dropped: ");
    OutputDebugStringA(what);
    OutputDebugStringA("\n");
}
} // namespace

void dropCurrentException() noexcept
{
    try {
        throw;
    } catch (const std::exception& e) {
        tellDebugger(e.what());
    } catch (...) {
        tellDebugger("no std::exception");
    }
}

void throwOnOrDropCurrentException()
{
    if (std::uncaught_exceptions() == 0) // That of the catch block has been caught.
        throw;
    dropCurrentException();
}
} // namespace tarn
