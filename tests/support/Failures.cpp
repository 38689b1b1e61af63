#include "Failures.h"

#include "Expect.h"
#include "Wine.h"

#include <tarn/Windows.h>

namespace support {
void expectFailures(std::initializer_list<Failure> failures)
{
    const auto isKnown = [](const Failure& failure, WineDifference difference) {
        return failure.difference == difference && isWine();
    };
    for (const Failure& failure : failures) {
        CAPTURE(failure.description);
        SetLastError(ERROR_FILE_NOT_FOUND);
        try {
            failure.call();
            CHECK(isKnown(failure, silentOnWine));
        } catch (const tarn::WindowsError& e) {
            CHECK(e.getDescription() == failure.description);
            CHECK((e.getError() != ERROR_FILE_NOT_FOUND || isKnown(failure, codelessOnWine)));
        }
    }
}
} // namespace support
