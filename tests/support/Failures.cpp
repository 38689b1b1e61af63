#include "Failures.h"

#include "Expect.h"

#include <tarn/Windows.h>

namespace support {
namespace {
bool isWine() { return GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version") != nullptr; }
} // namespace

void expectFailures(std::initializer_list<Failure> failures)
{
    for (const Failure& failure : failures) {
        CAPTURE(failure.description);
        SetLastError(ERROR_FILE_NOT_FOUND);
        bool hasThrown = false;
        try {
            failure.call();
        } catch (const tarn::WindowsError& e) {
            hasThrown = true;
            CHECK(e.getDescription() == failure.description);
            CHECK(e.getError() != ERROR_FILE_NOT_FOUND);
        }
        CHECK((hasThrown || (failure.isSilentOnWine && isWine())));
    }
}
} // namespace support
